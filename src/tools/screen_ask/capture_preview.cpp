#include "tools/screen_ask/capture_preview.h"

#include <QPainter>
#include <QPainterPath>

#include "core/ui/accessible_roles.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kWidth = 176;
constexpr qreal kRadius = Theme::kRowRadius;

}  // namespace

CapturePreview::CapturePreview(const ImageAskModel& model, QWidget* parent) : QWidget(parent), model_(model) {
  setAccessibleRole(*this, QAccessible::Graphic);
  setFixedWidth(kWidth);
  connect(&model_, &ImageAskModel::captureChanged, this, &CapturePreview::follow);
  follow();
}

void CapturePreview::follow() {
  const QSize size = model_.previewImage().size();
  setAccessibleName(u"Captured area, %1 × %2"_s.arg(size.width()).arg(size.height()));
  update();
}

void CapturePreview::paintEvent(QPaintEvent*) {
  const QImage& image = model_.previewImage();
  if (image.isNull()) return;
  const Theme& theme = themeOf(*this);
  const QSizeF most = QSizeF(size()) - QSizeF(2, 2);
  const QSizeF natural = QSizeF(image.size()) / devicePixelRatioF();
  const bool fits = natural.width() <= most.width() && natural.height() <= most.height();
  const QSizeF shown = fits ? natural : natural.scaled(most, Qt::KeepAspectRatio);
  const QRectF frame(QPointF((width() - shown.width()) / 2, 1), shown);
  QPainter painter(this);
  painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
  QPainterPath shape;
  shape.addRoundedRect(frame, kRadius, kRadius);
  painter.setClipPath(shape);
  painter.drawImage(frame, image);
  painter.setClipping(false);
  painter.strokePath(shape, QPen(theme.edge, 1));
}
