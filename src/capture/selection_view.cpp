#include "capture/selection_view.h"

#include <QMouseEvent>
#include <QPainter>

#include <utility>

#include "capture/capture_pill.h"
#include "capture/selection_geometry.h"

namespace {

constexpr double kDimming = 0.35;
constexpr double kOutline = 2;

/// How far the outline reaches to either side of the edge, and a pixel for rounding.
constexpr int kReach = 2;

}  // namespace

SelectionView::SelectionView(Look look, QWidget* parent)
    : QWidget(parent),
      pillLabel_(std::move(look.label)),
      pillIcon_(std::move(look.icon)),
      picture_(std::move(look.picture)),
      animated_(look.animated) {
  setMouseTracking(true);
  setCursor(Qt::CrossCursor);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void SelectionView::followPointer(QPointF pointer) {
  if (!pill_) pill_ = new CapturePill(pillLabel_, pillIcon_, this);
  pill_->move(pillOrigin(pointer, pill_->size(), size()).toPoint());
  pill_->show();
}

/// The view fills its window. For children of a window Qt rounds the position in the widget to whole points, which are
/// several pixels.
QPointF SelectionView::held(const QMouseEvent& event) const {
  const double scale = devicePixelRatioF();
  // At a fractional scale the window may be a part of a pixel larger than the screen.
  const QSizeF screen = picture_.isNull() ? QSizeF(size()) : QSizeF(picture_.size()) / scale;
  return withinView(event.scenePosition(), screen, scale);
}

void SelectionView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    isCancelling_ = true;
    return;
  }
  startPoint_ = held(*event);
  setCurrentRect(std::nullopt);
  if (pill_) pill_->fadeOut(animated_);
}

void SelectionView::mouseMoveEvent(QMouseEvent* event) {
  if (!startPoint_) return followPointer(event->position());
  setCurrentRect(spannedRect(*startPoint_, held(*event)));
}

// The end of a click, not its beginning: it would reach the window below the overlay.
void SelectionView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && startPoint_) return endDrag(event->position());
  if (event->button() != Qt::LeftButton && std::exchange(isCancelling_, false)) Q_EMIT cancelled();
}

void SelectionView::endDrag(QPointF pointer) {
  startPoint_.reset();
  if (currentRect_ && isLargeEnough(currentRect_->size())) {
    Q_EMIT selected(*currentRect_);
    return;
  }
  setCurrentRect(std::nullopt);
  followPointer(pointer);
  pill_->fadeIn(animated_);
}

/// The pointer has gone to another screen, whose own pill follows it there.
void SelectionView::leaveEvent(QEvent*) {
  if (pill_ && !startPoint_) pill_->hide();
}

void SelectionView::setCurrentRect(std::optional<QRectF> rect) {
  const auto inside = [](const auto& each) { return each ? QRegion(each->toAlignedRect()) : QRegion(); };
  QRegion changed = inside(currentRect_).xored(inside(rect));
  for (const auto& each : {currentRect_, rect})
    if (each) changed += decoration(*each);
  currentRect_ = rect;
  update(changed);
}

QRegion SelectionView::decoration(const QRectF& rect) const {
  const QRect edge = rect.toAlignedRect();
  const QRect outer = edge.adjusted(-kReach, -kReach, kReach, kReach);
  const QRect inner = edge.adjusted(kReach, kReach, -kReach, -kReach);
  return QRegion(outer).subtracted(inner) + labelBox(rect).toAlignedRect();
}

QString SelectionView::labelText(const QRectF& rect) const {
  const QRect pixels = pixelRect(rect, devicePixelRatioF()).value_or(QRect());
  return sizeText(picture_.isNull() ? pixels.size() : pixels.intersected(picture_.rect()).size());
}

QRectF SelectionView::labelBox(const QRectF& rect) const {
  return sizeLabelBox(rect, sizeLabel_.textSize(labelText(rect)), size());
}

void SelectionView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintGround(painter);
  if (currentRect_) paintSelection(painter);
}

void SelectionView::paintGround(QPainter& painter) const {
  const QColor shade = QColor::fromRgbF(0, 0, 0, kDimming);
  if (picture_.isNull()) {
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(rect(), shade);
    if (currentRect_) painter.fillRect(*currentRect_, Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    return;
  }
  QImage picture = picture_;
  picture.setDevicePixelRatio(devicePixelRatioF());
  painter.drawImage(QPointF(), picture);
  painter.fillRect(rect(), shade);
  if (!currentRect_) return;
  painter.setClipRect(*currentRect_);
  painter.drawImage(QPointF(), picture);
  painter.setClipping(false);
}

void SelectionView::paintSelection(QPainter& painter) const {
  QPen pen(Qt::white, kOutline);
  pen.setJoinStyle(Qt::MiterJoin);
  painter.setPen(pen);
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(*currentRect_);
  sizeLabel_.paint(painter, labelBox(*currentRect_), labelText(*currentRect_));
}
