#pragma once

#include <QAccessibleWidget>

#include <vector>

class QListView;

/// A list as assistive technology sees it: its rows can be read, and pressing one is a click on it. Qt's own lists only
/// let their rows be selected, which starts nothing.
class AccessibleRows final : public QAccessibleWidget {
 public:
  explicit AccessibleRows(QListView* list);
  ~AccessibleRows() override;

  QListView& list() const;

  int childCount() const override;
  QAccessibleInterface* child(int row) const override;
  int indexOfChild(const QAccessibleInterface* child) const override;
  QAccessibleInterface* childAt(int x, int y) const override;

 private:
  /// By row, made when first asked for. A row that has gone meanwhile is not valid.
  mutable std::vector<QAccessible::Id> rows_;
};
