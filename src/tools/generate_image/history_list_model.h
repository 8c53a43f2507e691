#pragma once

#include <QAbstractListModel>

class ImageHistory;

/// The kept images as rows: a thumbnail each, and its prompt and day for those who hear them.
class HistoryListModel final : public QAbstractListModel {
  Q_OBJECT

 public:
  explicit HistoryListModel(ImageHistory& history);

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  /// -1 for an image that is not there.
  int rowOf(const QString& id) const;
  QString idAt(int row) const;

 private:
  ImageHistory& history_;
  /// Those that are shown: rows do not change behind a view's back.
  QStringList ids_;
};
