#include "core/ui/theme_palette.h"

#include "core/ui/theme.h"

namespace {

/// `top` at `share` over `ground`, for palettes know no transparency.
QColor mixed(const QColor& ground, const QColor& top, float share) {
  const auto blend = [share](float a, float b) { return a + (b - a) * share; };
  return QColor::fromRgbF(blend(ground.redF(), top.redF()), blend(ground.greenF(), top.greenF()),
                          blend(ground.blueF(), top.blueF()));
}

}  // namespace

QPalette themePalette(const Theme& theme) {
  // Controls need a stronger edge than the hairline of cards.
  const QColor button = theme.dark ? mixed(theme.card, Qt::white, 0.08F) : QColor(Qt::white);
  QPalette palette(button, theme.window);
  palette.setColor(QPalette::WindowText, theme.text);
  palette.setColor(QPalette::Text, theme.text);
  palette.setColor(QPalette::ButtonText, theme.text);
  palette.setColor(QPalette::BrightText, theme.failure);
  palette.setColor(QPalette::Base, theme.card);
  palette.setColor(QPalette::AlternateBase, theme.raised);
  palette.setColor(QPalette::ToolTipBase, theme.raised);
  palette.setColor(QPalette::ToolTipText, theme.text);
  palette.setColor(QPalette::PlaceholderText, theme.secondary);
  palette.setColor(QPalette::Highlight, theme.selection);
  palette.setColor(QPalette::HighlightedText, theme.onAccent);
  palette.setColor(QPalette::Link, theme.accent);
  palette.setColor(QPalette::LinkVisited, theme.accent);
  palette.setColor(QPalette::Mid, mixed(theme.window, theme.text, 0.25F));
  const QColor faint = mixed(theme.window, theme.text, 0.4F);
  for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, faint);
  palette.setColor(QPalette::Disabled, QPalette::Highlight, theme.switchOff);
  return palette;
}
