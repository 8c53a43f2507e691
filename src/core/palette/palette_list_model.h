#pragma once

#include <QAbstractListModel>

/// What the list of every palette has: a query that filters its rows, and a selected row. Main thread only.
class PaletteListModel : public QAbstractListModel {
  Q_OBJECT

 public:
  using QAbstractListModel::QAbstractListModel;

  void setQuery(const QString& query);
  const QString& query() const { return query_; }
  int selectionIndex() const { return selectionIndex_; }
  /// Selects a row; others than the rows there are change nothing.
  void select(int index);
  /// Cyclic; nothing happens in an empty list.
  void moveSelection(int delta);
  /// What stands in place of an empty list.
  virtual QString emptyText() const = 0;

 Q_SIGNALS:
  /// Query, rows or selection have changed.
  void changed();

 protected:
  /// Starts over with an empty query, and `collectRows` for what has changed below.
  void restart();
  /// Collects the rows anew for the query; the first is selected then.
  void refilter();
  /// Replaces the rows by those that match `query()`.
  virtual void collectRows() = 0;

 private:
  QString query_;
  int selectionIndex_ = 0;
};
