#include "core/ui/toast/toast_painter.h"

#include <QPainterPath>
#include <QSvgRenderer>

#include <algorithm>
#include <cmath>

#include "core/ui/icon.h"
#include "core/ui/key_caps.h"
#include "core/ui/progress_marks.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

double luminance(const QColor& color) {
  const auto linear = [](double c) { return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor toned(ToastTone tone, const Theme& theme) {
  switch (tone) {
    case ToastTone::accent:
      return theme.accent;
    case ToastTone::success:
      return theme.success;
    case ToastTone::failure:
      return theme.failure;
    case ToastTone::plain:
      break;
  }
  return theme.text;
}

/// The tint, or the text colour for a tint that can hardly be seen on this card (white on the light one).
QColor visibleTint(const ToastContent& content, const Theme& theme) {
  const QColor& tint = content.iconColor;
  if (!tint.isValid()) return toned(content.tone, theme);
  const double a = luminance(tint) + 0.05;
  const double b = luminance(theme.card) + 0.05;
  return std::max(a, b) / std::min(a, b) < 1.6 ? theme.text : tint;
}

void paintThumbnail(QPainter& painter, const QImage& image, const QRect& rect) {
  const double side = std::min(image.width(), image.height());
  const QRectF middle((image.width() - side) / 2, (image.height() - side) / 2, side, side);
  painter.save();
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  QPainterPath shape;
  shape.addRoundedRect(rect, 6, 6);
  painter.setClipPath(shape);
  painter.drawImage(rect, image, middle);
  painter.restore();
}

void paintLeading(QPainter& painter, const ToastContent& content, const QRect& rect, const ToastFrame& frame,
                  const Theme& theme) {
  if (rect.isEmpty()) return;
  if (content.showsSpinner)
    Spinner{frame.turn, theme.accent, theme.hairline}.paint(painter, QRectF(rect).adjusted(2, 2, -2, -2));
  else if (!content.thumbnail.isNull())
    paintThumbnail(painter, content.thumbnail, rect);
  else if (!content.assetIcon.isEmpty())
    QSvgRenderer(":/icons/"_L1 + content.assetIcon + ".svg"_L1).render(&painter, rect);
  else
    paintSymbol(painter, content.icon, rect, visibleTint(content, theme));
}

void paintLines(QPainter& painter, const QStringList& lines, const QRect& rect, const QFont& font, int step) {
  painter.setFont(font);
  int y = rect.top() + QFontMetrics(font).ascent();
  for (const QString& line : lines) {
    painter.drawText(rect.left(), y, line);
    y += step;
  }
}

void paintKeys(QPainter& painter, const ToastContent& content, const QRect& rect, const Theme& theme) {
  if (content.keys.isEmpty()) return;
  painter.setFont(Theme::detailFont());
  painter.setPen(theme.secondary);
  painter.drawText(rect, Qt::AlignLeft | Qt::AlignVCenter, content.keysPrefix);
  const int prefix = content.keysPrefix.isEmpty() ? 0 : painter.fontMetrics().horizontalAdvance(content.keysPrefix) + 6;
  KeyCapRow{content.keys}.paint(painter, QPointF(rect.left() + prefix, rect.top()), theme);
}

}  // namespace

void paintToast(QPainter& painter, const ToastContent& content, const ToastLayout& layout, const ToastFrame& frame,
                const Theme& theme) {
  painter.setRenderHint(QPainter::Antialiasing);
  paintLeading(painter, content, layout.leading, frame, theme);
  painter.setPen(theme.text);
  paintLines(painter, layout.titleLines, layout.title, Theme::rowFont(), QFontMetrics(Theme::rowFont()).height());
  const QFont detailFont = toastDetailFont(content);
  painter.setPen(theme.secondary);
  paintLines(painter, layout.detailLines, layout.detail, detailFont, QFontMetrics(detailFont).lineSpacing());
  paintKeys(painter, content, layout.keys, theme);
  if (frame.remaining >= 0)
    CountdownRing{frame.remaining, theme.secondary, theme.hairline}.paint(
        painter, QRectF(layout.trailing).adjusted(1, 1, -1, -1));
}
