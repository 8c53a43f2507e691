#include "tools/generate_image/history_strip.h"

#include <QAccessible>
#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include <utility>

#include "core/ui/icon.h"
#include "core/ui/theme.h"
#include "tools/generate_image/generate_image_panel_controller.h"

using namespace Qt::StringLiterals;

namespace {

using Area = GenerateImageModel::Area;

constexpr int kCell = HistoryStrip::kHeight;
constexpr int kInset = 6;
constexpr double kRing = 2.5;
constexpr double kGap = 1.5;
constexpr qreal kRadius = 6;
constexpr int kSymbol = 20;

class ThumbnailDelegate final : public QStyledItemDelegate {
 public:
  ThumbnailDelegate(const GenerateImageModel& model, QObject* parent) : QStyledItemDelegate(parent), model_(model) {}

  QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override { return {kCell, kCell}; }
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const Theme& theme = themeOf(*option.widget);
    const auto picture = index.data(Qt::DecorationRole).value<QImage>();
    const QRectF place = QRectF(option.rect).adjusted(kInset, kInset, -kInset, -kInset);
    QPainterPath shape;
    shape.addRoundedRect(place, kRadius, kRadius);
    painter->save();
    painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter->fillPath(shape, theme.raised);
    painter->setClipPath(shape);
    if (picture.isNull())
      paintSymbol(*painter, u"photo"_s,
                  QRectF(place.center() - QPointF(kSymbol, kSymbol) / 2, QSizeF(kSymbol, kSymbol)), theme.secondary);
    else
      painter->drawImage(place, picture);
    painter->setClipping(false);
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(theme.hairline);
    painter->drawPath(shape);
    if (isSelected) paintRing(*painter, place, theme);
    painter->restore();
  }

 private:
  /// With a gap, so that it is seen beside a picture of its own colour.
  void paintRing(QPainter& painter, const QRectF& place, const Theme& theme) const {
    painter.setPen(QPen(model_.area() == Area::history ? theme.accent : theme.secondary, kRing));
    const double out = kRing / 2 + kGap;
    painter.drawRoundedRect(place.adjusted(-out, -out, out, out), kRadius + out, kRadius + out);
  }

  const GenerateImageModel& model_;
};

}  // namespace

HistoryStrip::HistoryStrip(GenerateImagePanelController& controller, QWidget* parent)
    : PaletteList(u"History"_s, parent), controller_(controller) {
  setFlow(LeftToRight);
  setWrapping(false);
  setHorizontalScrollMode(ScrollPerPixel);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFixedHeight(kHeight);
  setModel(&controller.historyList());
  setItemDelegate(new ThumbnailDelegate(controller.model(), this));
  connect(this, &QListView::clicked, &controller_,
          [this](const QModelIndex& index) { controller_.openHistory(index.row()); });
}

/// The strip never has the focus, yet a screen reader shall speak the image that is chosen.
void HistoryStrip::announce(int row) {
  if (!QAccessible::isActive() || std::exchange(announced_, row) == row) return;
  QAccessibleEvent event(this, QAccessible::Focus);
  event.setChild(row);
  QAccessible::updateAccessibility(&event);
}

void HistoryStrip::follow() {
  const QModelIndex index = model()->index(controller_.historyList().rowOf(controller_.model().selectedID()), 0);
  if (index.isValid()) {
    setCurrentIndex(index);
    scrollTo(index);
    if (controller_.model().area() == Area::history) announce(index.row());
  } else {
    announced_ = -1;
    setCurrentIndex({});
    clearSelection();
  }
  viewport()->update();
}
