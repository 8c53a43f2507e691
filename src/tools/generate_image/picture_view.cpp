#include "tools/generate_image/picture_view.h"

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QUrl>

#include "base/visible_text.h"
#include "core/ui/accessible_roles.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kShown = 200;
constexpr QSize kDragged(160, 160);

}  // namespace

PictureView::PictureView(const GenerateImageModel& model, FileOf fileOf, QWidget* parent)
    : QWidget(parent), model_(model), fileOf_(std::move(fileOf)) {
  setAccessibleRole(*this, QAccessible::Graphic);
  setToolTip(u"Drag the image to where you need it"_s);
  setCursor(Qt::OpenHandCursor);
}

void PictureView::follow() {
  const auto& shown = model_.shown();
  const QString id = shown ? shown->historyID : QString();
  if (id == shownID_) return;
  shownID_ = id;
  scaled_ = {};
  setAccessibleName(shown ? u"Image: "_s + visibleLine(shown->request.prompt, kShown) : QString());
  update();
}

QRect PictureView::place() const {
  if (!model_.shown()) return {};
  // Never larger than it is: a small picture blown up looks broken.
  const QSize size =
      model_.shown()->image.size.boundedTo(model_.shown()->image.size.scaled(this->size(), Qt::KeepAspectRatio));
  return {QPoint((width() - size.width()) / 2, (height() - size.height()) / 2), size};
}

void PictureView::paintEvent(QPaintEvent*) {
  if (!model_.shown()) return;
  const QRect place = this->place();
  const QSize pixels = place.size() * devicePixelRatioF();
  if (scaled_.size() != pixels)
    scaled_ = QPixmap::fromImage(
        model_.shown()->image.picture.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
  QPainter painter(this);
  painter.drawPixmap(place, scaled_);
  painter.setPen(themeOf(*this).hairline);
  painter.drawRect(place.adjusted(0, 0, -1, -1));
}

void PictureView::mousePressEvent(QMouseEvent* event) { pressedAt_ = event->position().toPoint(); }

void PictureView::mouseMoveEvent(QMouseEvent* event) {
  const QPoint way = event->position().toPoint() - pressedAt_;
  if (!(event->buttons() & Qt::LeftButton) || way.manhattanLength() < QApplication::startDragDistance()) return;
  if (model_.shown() && place().contains(pressedAt_)) drag();
}

/// Dragging is the one thing that Qt offers with an event loop inside only. What the model holds may change meanwhile.
void PictureView::drag() {
  const ShownImage shown = *model_.shown();
  auto* held = new QMimeData;
  held->setData(u"image/png"_s, shown.image.png);
  if (const QString file = fileOf_(shown.historyID); !file.isEmpty()) held->setUrls({QUrl::fromLocalFile(file)});
  auto* drag = new QDrag(this);
  drag->setMimeData(held);
  drag->setPixmap(
      QPixmap::fromImage(shown.image.picture.scaled(kDragged, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
  drag->exec(Qt::CopyAction);
}
