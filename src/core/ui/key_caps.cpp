#include "core/ui/key_caps.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

#include "core/ui/theme.h"

namespace {

constexpr int kGap = 3;
constexpr int kPadding = 6;

double capWidth(const QString& cap, const QFontMetricsF& metrics) {
  return std::max<double>(KeyCapRow::kHeight, std::ceil(metrics.horizontalAdvance(cap)) + 2 * kPadding);
}

/// Glyphs such as ⌃ sit high on their line; they are centred by their ink, letters by their line.
void paintCapText(QPainter& painter, const QRectF& cap, const QString& text, const QFontMetricsF& metrics) {
  const bool isGlyph = text.size() == 1 && !text.front().isLetterOrNumber();
  if (!isGlyph) {
    painter.drawText(cap, Qt::AlignCenter, text);
    return;
  }
  const QRectF ink = metrics.tightBoundingRect(text);
  painter.drawText(QPointF(cap.center().x() - ink.center().x(), cap.center().y() - ink.center().y()), text);
}

}  // namespace

QSizeF KeyCapRow::size() const {
  const QFontMetricsF metrics(Theme::keyCapFont());
  double width = kGap * std::max<double>(0, double(caps.size()) - 1);
  for (const QString& cap : caps) width += capWidth(cap, metrics);
  return {width, caps.isEmpty() ? 0.0 : kHeight};
}

void KeyCapRow::paint(QPainter& painter, const QPointF& topLeft, const Theme& theme, KeyCapGround ground) const {
  const bool selected = ground == KeyCapGround::selection;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setFont(Theme::keyCapFont());
  const QFontMetricsF metrics(painter.font());
  QRectF cap(topLeft, QSizeF(0, kHeight));
  for (const QString& text : caps) {
    cap.setWidth(capWidth(text, metrics));
    painter.setPen(Qt::NoPen);
    painter.setBrush(selected ? QColor(255, 255, 255, 40) : theme.raised);
    painter.drawRoundedRect(cap, Theme::kKeyCapRadius, Theme::kKeyCapRadius);
    painter.setPen(QPen(selected ? QColor(255, 255, 255, 56) : theme.hairline, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(cap.adjusted(0.5, 0.5, -0.5, -0.5), Theme::kKeyCapRadius - 0.5, Theme::kKeyCapRadius - 0.5);
    painter.setPen(selected ? theme.onAccent : theme.text);
    paintCapText(painter, cap, text, metrics);
    cap.moveLeft(cap.right() + kGap);
  }
  painter.restore();
}

KeyCaps::KeyCaps(const QStringList& caps, QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setCaps(caps);
}

void KeyCaps::setCaps(const QStringList& caps) {
  row_.caps = caps;
  setAccessibleName(caps.join(QLatin1Char(' ')));
  updateGeometry();
  update();
}

QSize KeyCaps::sizeHint() const { return {static_cast<int>(std::ceil(row_.size().width())), KeyCapRow::kHeight}; }

void KeyCaps::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  row_.paint(painter, {0, (height() - KeyCapRow::kHeight) / 2.0}, themeOf(*this));
}
