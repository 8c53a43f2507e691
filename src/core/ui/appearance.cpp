#include "core/ui/appearance.h"

#include <QApplication>

#include "core/ui/control_style.h"
#include "core/ui/theme.h"
#include "core/ui/theme_palette.h"
#include "platform/desktop_application.h"

Appearance::Appearance(const AppPreferences& preferences, DesktopApplication& desktop)
    : preferences_(preferences), desktop_(desktop) {}

void Appearance::apply() {
  if (!std::exchange(watching_, true)) {
    QApplication::setStyle(new ControlStyle);
    QApplication::setFont(Theme::detailFont());
    // What the platform theme says until the desktop itself has answered.
    desktopIsDark_ = QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
    connect(&preferences_, &StoreBase::changed, this, &Appearance::update);
    desktop_.watchAppearance([this](bool dark) {
      desktopIsDark_ = dark;
      update();
      Q_EMIT desktopChanged();
    });
  }
  update();
}

void Appearance::update() {
  const bool forced = preferences_.value().appearance == AppAppearance::dark;
  desktop_.forceDark(forced);
  const Theme& theme = forced || desktopIsDark_ ? Theme::darkTheme() : Theme::light();
  const QPalette palette = themePalette(theme);
  if (palette != QApplication::palette()) QApplication::setPalette(palette);
}
