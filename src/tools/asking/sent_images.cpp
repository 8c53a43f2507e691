#include "tools/asking/sent_images.h"

#include <QPainter>

#include "core/ui/accessible_roles.h"
#include "core/ui/theme.h"
#include "tools/asking/thumbnail_painting.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kSide = Theme::kRowHeight;
constexpr int kSpacing = Theme::kGrid / 2;

}  // namespace

SentImages::SentImages(std::vector<QImage> thumbnails, QWidget* parent)
    : QWidget(parent), thumbnails_(std::move(thumbnails)) {
  const int count = static_cast<int>(thumbnails_.size());
  setFixedSize(count * (kSide + kSpacing) - kSpacing, kSide);
  setAccessibleRole(*this, QAccessible::Graphic);
  setAccessibleName(count == 1 ? u"1 image attached"_s : u"%1 images attached"_s.arg(count));
}

void SentImages::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
  QRectF place(0, 0, kSide, kSide);
  for (const QImage& thumbnail : thumbnails_) {
    paintThumbnail(painter, place.adjusted(0.5, 0.5, -0.5, -0.5), thumbnail, {theme.raised, QPen(theme.edge, 1)});
    place.translate(kSide + kSpacing, 0);
  }
}
