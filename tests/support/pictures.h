#pragma once

#include <QApplication>
#include <QTest>

#include "core/ui/control_style.h"
#include "core/ui/theme.h"
#include "core/ui/theme_palette.h"

/// Widgets look as they do in the program, in the light appearance.
inline void wearTheme() {
  QApplication::setStyle(new ControlStyle);
  QApplication::setFont(Theme::detailFont());
  QApplication::setPalette(themePalette(Theme::light()));
}

/// With VANTLE_SHOTS a folder for pictures, keeps one of the window in each appearance there.
inline void shoot(QWidget& window, const QString& name) {
  const QString folder = qEnvironmentVariable("VANTLE_SHOTS");
  if (folder.isEmpty()) return;
  for (const Theme* theme : {&Theme::darkTheme(), &Theme::light()}) {
    QApplication::setPalette(themePalette(*theme));
    QCoreApplication::processEvents();
    const QLatin1StringView look(theme->dark ? "dark" : "light");
    QVERIFY(window.grab().save(QStringLiteral("%1/%2-%3.png").arg(folder, name, look)));
  }
}
