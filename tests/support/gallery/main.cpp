#include <QApplication>
#include <QDir>

#include <cstdio>

#include "core/ui/control_style.h"
#include "core/ui/theme.h"
#include "core/ui/theme_palette.h"
#include "support/gallery/pieces.h"

using namespace Qt::StringLiterals;

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  const QStringList arguments = QApplication::arguments();
  const bool dark = arguments.contains(u"--dark"_s);
  const QDir folder(arguments.value(1));
  if (arguments.size() < 2 || !folder.mkpath(u"."_s)) {
    std::fputs("usage: gallery <folder> [--dark]\n", stderr);
    return 2;
  }
  QApplication::setStyle(new ControlStyle);
  QApplication::setFont(Theme::detailFont());
  QApplication::setPalette(themePalette(dark ? Theme::darkTheme() : Theme::light()));
  for (const Piece& piece : makePieces()) {
    piece.widget->ensurePolished();
    const QString file = folder.filePath(piece.name + (dark ? "-dark.png"_L1 : "-light.png"_L1));
    if (!piece.widget->grab().save(file)) return 1;
  }
  return 0;
}
