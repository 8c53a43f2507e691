#include "tools/generate_image/reference_row.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>

#include <utility>

#include "core/ui/icon.h"
#include "core/ui/theme.h"
#include "tools/generate_image/generate_image_model.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kEdge = 56;
constexpr qreal kRadius = 6;
constexpr int kMark = 18;
constexpr double kRing = 3;

/// A thumbnail with a mark in its corner: a pencil, or a cross under the pointer.
class ReferenceChip final : public QPushButton {
 public:
  ReferenceChip(const ImageReference& reference, const QString& name, bool isEdited)
      : image_(reference.thumbnail), id_(reference.id), isEdited_(isEdited) {
    setAccessibleName(name);
    setToolTip(name);
    setFixedSize(kEdge, kEdge);
    setFocusPolicy(Qt::NoFocus);
  }

  /// The chip never has the focus, yet a screen reader shall speak the one that is selected.
  void followSelection(int id) {
    if (std::exchange(isSelected_, id == id_) == (id == id_)) return;
    update();
    if (!isSelected_ || !QAccessible::isActive()) return;
    QAccessibleEvent event(this, QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
  }

 protected:
  void enterEvent(QEnterEvent*) override { update(); }
  void leaveEvent(QEvent*) override { update(); }
  void paintEvent(QPaintEvent*) override {
    const Theme& theme = themeOf(*this);
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    QPainterPath shape;
    shape.addRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kRadius, kRadius);
    painter.setClipPath(shape);
    const QSize size = image_.size().scaled(QSize(kEdge, kEdge), Qt::KeepAspectRatioByExpanding);
    painter.drawImage(QRect(QPoint((kEdge - size.width()) / 2, (kEdge - size.height()) / 2), size), image_);
    painter.setClipping(false);
    painter.strokePath(shape, QPen(isEdited_ ? theme.accent : theme.edge, isEdited_ ? 2 : 1));
    if (isSelected_) paintRing(painter, theme);
    if (isEdited_ || underMouse() || isSelected_) paintMark(painter, theme);
  }

 private:
  void paintRing(QPainter& painter, const Theme& theme) const {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(theme.accent, kRing));
    constexpr double kIn = kRing / 2;
    painter.drawRoundedRect(QRectF(rect()).adjusted(kIn, kIn, -kIn, -kIn), kRadius, kRadius);
  }
  void paintMark(QPainter& painter, const Theme& theme) const {
    const QRectF place(kEdge - kMark - 3, 3, kMark, kMark);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.selection);
    painter.drawEllipse(place);
    paintSymbol(painter, underMouse() || isSelected_ ? u"xmark"_s : u"pencil"_s, place.adjusted(4, 4, -4, -4),
                theme.onAccent);
  }

  QImage image_;
  int id_;
  bool isEdited_;
  bool isSelected_ = false;
};

}  // namespace

ReferenceRow::ReferenceRow(GenerateImageModel& model, QWidget* parent)
    : QWidget(parent), model_(model), row_(new QHBoxLayout(this)) {
  row_->setContentsMargins({});
  row_->setSpacing(Theme::kGrid);
  row_->addStretch(1);
  follow();
}

void ReferenceRow::follow() {
  std::vector<int> ids;
  for (const ImageReference& one : model_.references()) ids.push_back(one.id);
  setVisible(!ids.empty());
  if (ids != ids_ || isEdit_ != model_.isEdit()) makeChips(ids);
  for (QPushButton* chip : chips_) static_cast<ReferenceChip*>(chip)->followSelection(model_.selectedReference());
}

void ReferenceRow::makeChips(const std::vector<int>& ids) {
  ids_ = ids;
  isEdit_ = model_.isEdit();
  // One of them may be the sender of what led here.
  for (QPushButton* chip : chips_) {
    chip->hide();
    chip->deleteLater();
  }
  chips_.clear();
  for (const ImageReference& one : model_.references()) {
    const bool isEdited = isEdit_ && chips_.empty();
    const QString what = isEdited ? u"The image to be changed"_s : u"Reference %1"_s.arg(chips_.size() + 1);
    auto* chip = new ReferenceChip(one, what + u": click to remove it"_s, isEdited);
    connect(chip, &QPushButton::clicked, this, [this, id = one.id] { model_.removeReference(id); });
    row_->insertWidget(static_cast<int>(chips_.size()), chip);
    chips_.push_back(chip);
  }
}
