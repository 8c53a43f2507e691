#include "core/ui/launcher/text_button.h"

#include <QPainter>

#include "core/ui/theme.h"

namespace {

constexpr int kHeight = 26;
constexpr int kPadding = 8;

}  // namespace

TextButton::TextButton(QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::NoFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void TextButton::setLabel(const QString& label) {
  if (label == text()) return;
  setText(label);
  updateGeometry();
}

QSize TextButton::sizeHint() const {
  return {QFontMetrics(Theme::detailFont()).horizontalAdvance(text()) + 2 * kPadding, kHeight};
}

void TextButton::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (underMouse() || isDown()) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(isDown() ? theme.raised : theme.hover);
    painter.drawRoundedRect(rect(), 6, 6);
  }
  painter.setFont(Theme::detailFont());
  painter.setPen(theme.accent);
  painter.drawText(rect(), Qt::AlignCenter, text());
}

void TextButton::enterEvent(QEnterEvent*) { update(); }

void TextButton::leaveEvent(QEvent*) { update(); }
