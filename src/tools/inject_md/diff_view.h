#pragma once

#include <QAbstractScrollArea>

#include <vector>

#include "tools/inject_md/text_diff.h"

/// The lines that would change, set off by a hairline; hidden while there are none. It never has the focus: the panel's
/// keys turn its pages.
class DiffView final : public QAbstractScrollArea {
  Q_OBJECT

 public:
  explicit DiffView(QWidget* parent = nullptr);

  /// Begins at the top unless they are the lines that are shown.
  void setLines(const std::vector<DiffLine>& lines);
  bool hasPages() const;
  /// Down, or up for a negative number.
  void turn(int pages);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void paintLine(QPainter& painter, const QRect& row, const DiffLine& line) const;
  int contentHeight() const;
  void fitScrollBar();

  std::vector<DiffLine> lines_;
};
