#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QWidget>

#include <cstdio>

#include "core/ui/icon.h"
#include "core/ui/theme.h"
#include "core/ui/theme_palette.h"

using namespace Qt::StringLiterals;

namespace {

/// Every symbol at 24 and 48 pixels with its name.
QPixmap symbols(const Theme& theme) {
  constexpr int kColumns = 8;
  constexpr QSize kCell(136, 100);
  const QStringList names = symbolNames();
  QWidget sheet;
  sheet.resize(kColumns * kCell.width(), (int(names.size()) + kColumns - 1) / kColumns * kCell.height());
  QPixmap picture = sheet.grab();
  QPainter painter(&picture);
  for (int i = 0; i < names.size(); ++i) {
    const QPoint corner(i % kColumns * kCell.width(), i / kColumns * kCell.height());
    paintSymbol(painter, names[i], QRectF(corner + QPoint(20, 28), QSizeF(24, 24)), theme.text);
    paintSymbol(painter, names[i], QRectF(corner + QPoint(64, 16), QSizeF(48, 48)), theme.text);
    painter.setPen(theme.secondary);
    painter.drawText(QRect(corner + QPoint(0, 72), QSize(kCell.width(), 20)), Qt::AlignCenter, names[i]);
  }
  return picture;
}

}  // namespace

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  const bool dark = QApplication::arguments().contains(u"--dark"_s);
  const QDir folder(QApplication::arguments().value(1));
  if (argc < 2 || !folder.mkpath(u"."_s)) {
    std::fputs("usage: gallery <folder> [--dark]\n", stderr);
    return 2;
  }
  const Theme& theme = dark ? Theme::darkTheme() : Theme::light();
  QApplication::setFont(Theme::detailFont());
  QApplication::setPalette(themePalette(theme));
  return symbols(theme).save(folder.filePath(dark ? u"symbols-dark.png"_s : u"symbols-light.png"_s)) ? 0 : 1;
}
