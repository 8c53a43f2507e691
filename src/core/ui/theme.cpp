#include "core/ui/theme.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace {

Theme makeDark() {
  return {.dark = true,
          .window = QColor(0x18191D),
          .card = QColor(0x1E1F24),
          .text = QColor(0xF2F3F5),
          .secondary = QColor(0x9BA1AA),
          .accent = QColor(0x4C8DFF),
          .selection = QColor(0x2F6FED),
          .idleSelection = QColor(255, 255, 255, 30),
          .onAccent = QColor(Qt::white),
          .success = QColor(0x3FB950),
          .failure = QColor(0xF85149),
          .hairline = QColor(255, 255, 255, 26),
          .edge = QColor(255, 255, 255, 46),
          .raised = QColor(0x2A2C32),
          .hover = QColor(255, 255, 255, 14),
          .switchOff = QColor(0x4A4D55),
          .shadow = QColor(0, 0, 0, 150)};
}

Theme makeLight() {
  return {.dark = false,
          .window = QColor(0xF3F4F6),
          .card = QColor(0xFCFCFD),
          .text = QColor(0x1B1D21),
          .secondary = QColor(0x6A707A),
          .accent = QColor(0x2F6FED),
          .selection = QColor(0x2F6FED),
          .idleSelection = QColor(0, 0, 0, 24),
          .onAccent = QColor(Qt::white),
          .success = QColor(0x1A7F37),
          .failure = QColor(0xCF222E),
          .hairline = QColor(0, 0, 0, 28),
          .edge = QColor(0, 0, 0, 48),
          .raised = QColor(0xEEF0F3),
          .hover = QColor(0, 0, 0, 10),
          .switchOff = QColor(0xC4C8CE),
          .shadow = QColor(0, 0, 0, 70)};
}

/// Points of the design are logical pixels, as on macOS. Other systems count 96 of them to the inch, not 72; a desktop
/// set to larger text still gets it.
QFont sized(QFont font, qreal pixels, QFont::Weight weight = QFont::Normal) {
  const QScreen* screen = QGuiApplication::primaryScreen();
  const bool pointIsPixel = screen && screen->logicalDotsPerInch() < 80;
  font.setPointSizeF(pointIsPixel ? pixels : pixels * 72 / 96);
  font.setWeight(weight);
  return font;
}

QFont interface() {
  QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
  font.setFamilies({QStringLiteral("Inter"), font.family()});
  return font;
}

}  // namespace

const Theme& Theme::light() {
  static const Theme theme = makeLight();
  return theme;
}

const Theme& Theme::darkTheme() {
  static const Theme theme = makeDark();
  return theme;
}

QFont Theme::fieldFont() { return sized(interface(), 17); }
QFont Theme::rowFont() { return sized(interface(), 13.5, QFont::Medium); }
QFont Theme::detailFont() { return sized(interface(), 11.5); }
QFont Theme::calloutFont() { return sized(interface(), 12, QFont::Medium); }
QFont Theme::sizeLabelFont() { return sized(interface(), 12); }
QFont Theme::keyCapFont() { return sized(interface(), 11.5, QFont::Medium); }
QFont Theme::monospacedFont() { return sized(QFontDatabase::systemFont(QFontDatabase::FixedFont), 11.5); }

const Theme& themeOf(const QWidget& widget) {
  return widget.palette().color(QPalette::Window).lightness() < 128 ? Theme::darkTheme() : Theme::light();
}
