#include "core/ui/reading_area.h"

#include <QPainter>
#include <QScrollBar>

#include "core/ui/accessible_roles.h"
#include "core/ui/control_painter.h"
#include "core/ui/theme.h"

ReadingArea::ReadingArea(const QString& name, QWidget* parent) : QScrollArea(parent) {
  setAccessibleRole(*this, QAccessible::Pane);
  setAccessibleName(name);
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFocusPolicy(Qt::NoFocus);
  viewport()->setAutoFillBackground(false);
  connect(verticalScrollBar(), &QScrollBar::rangeChanged, this,
          [this](int, int maximum) { setFocusPolicy(maximum > 0 ? Qt::StrongFocus : Qt::NoFocus); });
}

void ReadingArea::paintEvent(QPaintEvent*) {
  if (!hasFocus()) return;
  QPainter painter(viewport());
  control::paintFocusRing(painter, viewport()->rect(), themeOf(*this));
}

void ReadingArea::focusInEvent(QFocusEvent*) { viewport()->update(); }

void ReadingArea::focusOutEvent(QFocusEvent*) { viewport()->update(); }
