#include "core/ui/card_shadow.h"

#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>

#include <algorithm>
#include <cmath>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int kReach = CardShadow::kReach;
/// Half the width of one box; three boxes in a row come close to a Gaussian and reach three times as far.
constexpr int kBlur = 11;
constexpr int kDrop = kReach - 3 * kBlur;

/// One running mean of width 2 * radius + 1 along a line of `line.size()` bytes that lie `step` apart.
void blurLine(uchar* bytes, qsizetype step, int radius, std::vector<uchar>& line) {
  const int length = static_cast<int>(line.size());
  for (int i = 0; i < length; ++i) line[static_cast<std::size_t>(i)] = bytes[i * step];
  const auto at = [&](int i) { return i < 0 || i >= length ? 0 : int{line[static_cast<std::size_t>(i)]}; };
  int sum = 0;
  for (int i = -radius; i < radius; ++i) sum += at(i);
  for (int i = 0; i < length; ++i) {
    sum += at(i + radius);
    bytes[i * step] = static_cast<uchar>(sum / (2 * radius + 1));
    sum -= at(i - radius);
  }
}

void blur(QImage& mask, int radius) {
  std::vector<uchar> row(static_cast<std::size_t>(mask.width()));
  std::vector<uchar> column(static_cast<std::size_t>(mask.height()));
  for (int pass = 0; pass < 3; ++pass) {
    for (int y = 0; y < mask.height(); ++y) blurLine(mask.scanLine(y), 1, radius, row);
    for (int x = 0; x < mask.width(); ++x) blurLine(mask.bits() + x, mask.bytesPerLine(), radius, column);
  }
}

/// Length of the patch that stays sharp-cornered in the middle: beyond it the shadow of an edge is the same everywhere.
int cornerLength(int radius) { return radius + kReach; }

QPixmap makePatch(const CardShadow& shadow, qreal ratio) {
  const int card = 2 * cornerLength(shadow.radius) + 1;
  const int side = card + 2 * kReach;
  QImage mask(QSize(side, side) * ratio, QImage::Format_Alpha8);
  mask.fill(0);
  QPainter painter(&mask);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(ratio, ratio);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Qt::black);
  painter.drawRoundedRect(QRectF(kReach, kReach + kDrop / 2.0, card, card), shadow.radius, shadow.radius);
  painter.end();
  blur(mask, std::max(1, static_cast<int>(std::lround(kBlur * ratio))));

  QImage image(mask.size(), QImage::Format_ARGB32_Premultiplied);
  image.fill(shadow.color);
  QPainter tint(&image);
  tint.setCompositionMode(QPainter::CompositionMode_DestinationIn);
  tint.drawImage(0, 0, mask);
  tint.end();
  return QPixmap::fromImage(image);
}

QPixmap patch(const CardShadow& shadow, qreal ratio) {
  const QString key = u"card-shadow/%1/%2/%3"_s.arg(shadow.radius).arg(shadow.color.rgba()).arg(ratio);
  QPixmap pixmap;
  if (!QPixmapCache::find(key, &pixmap)) {
    pixmap = makePatch(shadow, ratio);
    QPixmapCache::insert(key, pixmap);
  }
  return pixmap;
}

}  // namespace

void CardShadow::paint(QPainter& painter, const QRectF& card) const {
  const qreal ratio = painter.device()->devicePixelRatioF();
  const QPixmap pixmap = patch(*this, ratio);
  const QRectF outer = card.adjusted(-kReach, -kReach, kReach, kReach);
  // A card smaller than two corners gets a patch with its corners cut short.
  const qreal corner = std::min({qreal(cornerLength(radius) + kReach), outer.width() / 2, outer.height() / 2});
  const qreal side = pixmap.width() / ratio;
  const qreal target[2][4] = {{outer.left(), outer.left() + corner, outer.right() - corner, outer.right()},
                              {outer.top(), outer.top() + corner, outer.bottom() - corner, outer.bottom()}};
  const qreal source[4] = {0, corner, side - corner, side};
  for (int row = 0; row < 3; ++row)
    for (int column = 0; column < 3; ++column)
      painter.drawPixmap(
          QRectF(QPointF(target[0][column], target[1][row]), QPointF(target[0][column + 1], target[1][row + 1])),
          pixmap,
          QRectF(QPointF(source[column], source[row]) * ratio, QPointF(source[column + 1], source[row + 1]) * ratio));
}
