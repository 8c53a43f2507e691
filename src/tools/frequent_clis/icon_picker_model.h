#pragma once

#include <QAbstractListModel>

#include <vector>

#include "tools/frequent_clis/command_icon.h"

/// The icons of the picker, narrowed by a search in their names and ids. Main thread only.
class IconPickerModel : public QAbstractListModel {
  Q_OBJECT

 public:
  enum Role { NameRole = Qt::DisplayRole, IdRole = Qt::UserRole, MonogramRole, ColorRole };

  explicit IconPickerModel(QObject* parent = nullptr);

  void setQuery(const QString& query);
  /// What to say when no icon is left.
  QString emptyText() const;

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  QString query_;
  std::vector<const CommandIcon*> icons_;
};
