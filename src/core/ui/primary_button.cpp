#include "core/ui/primary_button.h"

#include <QPainter>

#include "core/ui/theme.h"

namespace {

constexpr qreal kRadius = 6;

}  // namespace

PrimaryButton::PrimaryButton(const QString& text, QWidget* parent) : QPushButton(text, parent) {
  setAutoDefault(true);
  setMinimumWidth(12 * Theme::kGrid);
}

void PrimaryButton::setProminent(bool prominent) {
  isProminent_ = prominent;
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
  painter.setPen(theme.onAccent);
  painter.setFont(font());
  painter.drawText(rect(), Qt::AlignCenter | Qt::TextShowMnemonic, text());
}
