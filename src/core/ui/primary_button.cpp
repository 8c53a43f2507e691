#include "core/ui/primary_button.h"

#include <QPainter>

#include "core/ui/icon.h"
#include "core/ui/theme.h"

namespace {

constexpr qreal kRadius = 6;
constexpr int kSymbol = 16;
constexpr int kGap = 6;

}  // namespace

PrimaryButton::PrimaryButton(const QString& text, QWidget* parent) : QPushButton(text, parent) {
  setAutoDefault(true);
  setMinimumWidth(12 * Theme::kGrid);
}

void PrimaryButton::setProminent(bool prominent) {
  isProminent_ = prominent;
  update();
}

void PrimaryButton::setSymbol(const QString& symbol) {
  symbol_ = symbol;
  update();
}

void PrimaryButton::paintEvent(QPaintEvent* event) {
  if (!isProminent_) return QPushButton::paintEvent(event);
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setOpacity(isEnabled() ? 1.0 : 0.4);
  painter.setPen(Qt::NoPen);
  painter.setBrush(isDown()       ? theme.selection.darker(125)
                   : underMouse() ? theme.selection.darker(108)
                                  : theme.selection);
  painter.drawRoundedRect(rect(), kRadius, kRadius);
  if (hasFocus()) {
    painter.setPen(QPen(theme.onAccent, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(2.5, 2.5, -2.5, -2.5), kRadius - 2, kRadius - 2);
  }
  paintLabel(painter);
}

void PrimaryButton::paintLabel(QPainter& painter) {
  const QColor& ink = themeOf(*this).onAccent;
  painter.setPen(ink);
  painter.setFont(font());
  QRect label = rect();
  if (!symbol_.isEmpty()) {
    const int wanted = kSymbol + kGap + fontMetrics().horizontalAdvance(text());
    label.setLeft((width() - wanted) / 2);
    paintSymbol(painter, symbol_, QRectF(label.left(), (height() - kSymbol) / 2.0, kSymbol, kSymbol), ink);
    label.setLeft(label.left() + kSymbol + kGap);
  }
  const auto side = symbol_.isEmpty() ? Qt::AlignHCenter : Qt::AlignLeft;
  painter.drawText(label, int(side | Qt::AlignVCenter) | Qt::TextShowMnemonic, text());
}
