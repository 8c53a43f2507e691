#include "app/shortcuts/key_painter.h"

#include <QPainter>

#include <algorithm>

#include "core/ui/icon.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr double kGap = 2.5;
constexpr double kRadius = 7;
/// Of the width of keys too small for it.
constexpr double kRadiusShare = 0.25;
constexpr double kIcon = 20;
constexpr double kMarkSize = 11;
constexpr double kInset = 7;
constexpr double kFaded = 0.45;
constexpr double kRing = 2;

struct KeyColors {
  QColor ground;
  QColor edge;
  QColor text;
  QColor icon;
};

QColor translucent(QColor color, double alpha) {
  color.setAlphaF(static_cast<float>(alpha));
  return color;
}

KeyColors litColors(const KeyFace& face, const Theme& theme) {
  if (face.isBlocked) return {theme.raised, theme.secondary, theme.text, theme.secondary};
  if (face.mark == KeyMark::application) return {theme.secondary, theme.secondary, theme.card, theme.card};
  return {theme.selection, theme.selection, theme.onAccent, theme.onAccent};
}

KeyColors colorsOf(const KeyFace& face, const Theme& theme) {
  if (face.light == KeyLight::lit) return litColors(face, theme);
  if (face.mark == KeyMark::none || face.light == KeyLight::faded)
    return {theme.raised, theme.hairline, theme.secondary, theme.secondary};
  if (face.isBlocked) return {theme.raised, theme.edge, theme.secondary, theme.secondary};
  if (face.mark == KeyMark::application)
    return {theme.card, translucent(theme.secondary, 0.7), theme.text, theme.secondary};
  return {translucent(theme.accent, theme.dark ? 0.22 : 0.13), translucent(theme.accent, 0.6), theme.text,
          theme.accent};
}

double radiusOf(const QRectF& key) { return std::min(kRadius, key.width() * kRadiusShare); }

void paintGround(QPainter& painter, const QRectF& key, const KeyFace& face, const KeyColors& colors) {
  const double radius = radiusOf(key);
  painter.setPen(Qt::NoPen);
  painter.setBrush(colors.ground);
  painter.drawRoundedRect(key, radius, radius);
  if (face.isBlocked && face.light != KeyLight::faded) {
    painter.setBrush(QBrush(translucent(colors.icon, 0.35), Qt::BDiagPattern));
    painter.drawRoundedRect(key, radius, radius);
  }
  painter.setPen(QPen(colors.edge, 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(key.adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
}

void paintLegend(QPainter& painter, const QRectF& key, const KeyFace& face, const QColor& color) {
  painter.setPen(color);
  painter.setFont(Theme::keyCapFont());
  const bool isAlone = face.icon.isEmpty();
  const QRectF room = isAlone ? key.adjusted(4, 0, -4, 0) : key.adjusted(kInset, 4, -4, 0);
  const auto alignment = isAlone ? Qt::AlignCenter : Qt::AlignLeft | Qt::AlignTop;
  // Where sign and word do not fit, the sign is enough.
  const bool fits = painter.fontMetrics().horizontalAdvance(face.legend) <= room.width();
  painter.drawText(room, static_cast<int>(alignment) | Qt::TextSingleLine,
                   fits ? face.legend : face.legend.section(u' ', 0, 0));
}

void paintIcon(QPainter& painter, const QRectF& key, const KeyFace& face, const QColor& color) {
  const QRectF icon(key.right() - kInset - kIcon + 2, key.bottom() - kInset - kIcon + 3, kIcon, kIcon);
  painter.save();
  if ((face.isOffline || face.isBlocked) && face.light != KeyLight::lit) painter.setOpacity(painter.opacity() * 0.6);
  paintSymbol(painter, face.icon, icon, color);
  painter.restore();
  const QString mark = face.isBlocked ? u"exclamationmark.triangle.fill"_s : u"wifi.slash"_s;
  if (!face.isBlocked && !face.isOffline) return;
  const QRectF corner(key.right() - kMarkSize - 5, key.top() + 6, kMarkSize, kMarkSize);
  paintSymbol(painter, mark, corner, color);
}

void paintRing(QPainter& painter, const QRectF& cell, const Theme& theme) {
  const double inset = kRing / 2 - 0.25;
  painter.setPen(QPen(theme.accent, kRing));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(cell.adjusted(inset, inset, -inset, -inset), kRadius + 1.5, kRadius + 1.5);
}

}  // namespace

KeyFace faceOf(const KeyboardLayoutModel& model, const KeyboardLayoutModel::Key& key) {
  KeyFace face{.legend = key.legend, .mark = model.markOf(key), .light = model.lightOf(key)};
  if (const auto place = model.entryOf(key)) {
    const ShortcutEntry& entry = model.entries()[*place];
    face.icon = entry.icon;
    face.isBlocked = entry.isBlocked;
    face.isOffline = entry.isOffline;
  }
  return face;
}

void paintKey(QPainter& painter, const QRectF& cell, const KeyFace& face, const Theme& theme) {
  const QRectF key = cell.adjusted(kGap, kGap, -kGap, -kGap);
  const KeyColors colors = colorsOf(face, theme);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  if (face.light == KeyLight::faded) painter.setOpacity(kFaded);
  paintGround(painter, key, face, colors);
  if (face.isHovered && face.light != KeyLight::lit) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.hover);
    painter.drawRoundedRect(key, kRadius, kRadius);
  }
  paintLegend(painter, key, face, colors.text);
  if (!face.icon.isEmpty()) paintIcon(painter, key, face, colors.icon);
  painter.setOpacity(1);
  if (face.isFocused) paintRing(painter, cell, theme);
  painter.restore();
}
