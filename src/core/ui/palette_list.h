#pragma once

#include <QListView>

/// The list of a palette: rows only, no frame, a slim scroll bar, and no focus of its own, for the panel's keys move
/// the selection.
class PaletteList : public QListView {
  Q_OBJECT

 public:
  /// `name`: what it lists, for screen readers.
  explicit PaletteList(const QString& name, QWidget* parent = nullptr);

  /// Selects a row, which is scrolled to. The list never has the focus, yet a screen reader speaks the row.
  void select(int row);
};
