#pragma once

#include <QListWidget>

/// The list at the left of a settings window: symbol and title, a hairline towards what it chooses. The chosen row is
/// in the accent while the keyboard is here.
class SidebarList : public QListWidget {
  Q_OBJECT

 public:
  /// `name` is for screen readers, `width` in pixels.
  SidebarList(const QString& name, int width, QWidget* parent = nullptr);

  void addEntry(const QString& title, const QString& symbol);
  /// Rows of what is switched off are drawn in the secondary colour.
  void setDimmed(int row, bool dimmed);

 protected:
  /// One row is always chosen: neither a drag out of the list nor Ctrl and a click take that away.
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index, const QEvent* event) const override;
  bool event(QEvent* event) override;
};
