#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>
#include <cstdlib>

namespace {

/// Of "vantle-48.png" or "icon_16x16@2x.png": how many pixels wide it is to be; 0 when the name does not say.
int pixelsOf(const QString& path) {
  const QString name = QFileInfo(path).completeBaseName();
  const bool isDouble = name.endsWith(QLatin1StringView("@2x"));
  const QString plain = isDouble ? name.chopped(3) : name;
  qsizetype digits = plain.size();
  while (digits > 0 && plain[digits - 1].isDigit()) --digits;
  return plain.sliced(digits).toInt() * (isDouble ? 2 : 1);
}

bool render(QSvgRenderer& picture, const QString& path) {
  const int pixels = pixelsOf(path);
  if (pixels == 0) return false;
  QImage image(pixels, pixels, QImage::Format_ARGB32);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  picture.render(&painter);
  painter.end();
  return image.save(path, "PNG");
}

}  // namespace

/// render_icons [--inset SHARE] PICTURE.svg NAME-SIZE.png…: the picture in the sizes that the names end in. The inset
/// is the share of its width that stays free on each side.
int main(int argc, char** argv) {
  int next = 1;
  double inset = 0;
  if (argc > 3 && qstrcmp(argv[1], "--inset") == 0) {
    inset = std::atof(argv[2]);
    next = 3;
  }
  QSvgRenderer picture;
  if (next >= argc || !picture.load(QFile::decodeName(argv[next]))) {
    std::fputs("render_icons: there is no such picture\n", stderr);
    return 1;
  }
  const QRectF drawn = picture.viewBoxF();
  picture.setViewBox(
      drawn.adjusted(-inset * drawn.width(), -inset * drawn.height(), inset * drawn.width(), inset * drawn.height()));
  for (int i = next + 1; i < argc; ++i) {
    if (render(picture, QFile::decodeName(argv[i]))) continue;
    std::fprintf(stderr, "render_icons: %s cannot be made\n", argv[i]);
    return 1;
  }
  return 0;
}
