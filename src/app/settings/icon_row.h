#pragma once

#include <QWidget>

#include "core/ui/icon_tile.h"

class QHBoxLayout;
class QLabel;
struct Theme;

/// A row of a section with a tile at its start, a title with up to two lines of text below it, and room for controls at
/// its end.
class IconRow : public QWidget {
  Q_OBJECT

 public:
  IconRow(const QString& symbol, const QString& title, const QString& detail);

  /// `tone`, &Theme::success say, colours the symbol; null leaves it in the accent.
  void setTile(const IconTile& tile, QColor Theme::* tone = nullptr);
  /// Empty texts take no room.
  void setTitle(const QString& title);
  void setDetail(const QString& detail);
  /// What stands in the way, below all of that and in full contrast; it can be selected.
  void setRemark(const QString& remark);
  void addEnd(QWidget* control);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  IconTile tile_;
  QColor Theme::* tone_ = nullptr;
  QLabel* title_;
  QLabel* detail_;
  QLabel* remark_;
  QHBoxLayout* row_;
};
