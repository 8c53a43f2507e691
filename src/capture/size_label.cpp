#include "capture/size_label.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>

#include "core/ui/theme.h"

namespace {

constexpr double kBoxRadius = 5;
constexpr double kPadding = 6;
constexpr double kBoxOpacity = 0.75;

double widestDigit(const QFontMetricsF& metrics) {
  double widest = 0;
  for (char digit = '0'; digit <= '9'; ++digit)
    widest = std::max(widest, metrics.horizontalAdvance(QChar::fromLatin1(digit)));
  return widest;
}

}  // namespace

SizeLabel::SizeLabel() : font_(Theme::sizeLabelFont()), digit_(widestDigit(QFontMetricsF(font_))) {}

double SizeLabel::advance(QChar character) const {
  return character.isDigit() ? digit_ : QFontMetricsF(font_).horizontalAdvance(character);
}

QSizeF SizeLabel::textSize(const QString& text) const {
  double width = 0;
  for (const QChar character : text) width += advance(character);
  return {width, QFontMetricsF(font_).height()};
}

void SizeLabel::paint(QPainter& painter, const QRectF& box, const QString& text) const {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor::fromRgbF(0, 0, 0, kBoxOpacity));
  painter.drawRoundedRect(box, kBoxRadius, kBoxRadius);
  painter.setFont(font_);
  painter.setPen(Qt::white);
  const double baseline = box.bottom() - kPadding - QFontMetricsF(font_).descent();
  double x = box.left() + kPadding;
  for (const QChar character : text) {
    const double room = advance(character);
    const double own = QFontMetricsF(font_).horizontalAdvance(character);
    painter.drawText(QPointF(x + (room - own) / 2, baseline), QString(character));
    x += room;
  }
}
