#include "tools/feedback/snip_thumbnail.h"

#include <QPainter>
#include <QPainterPath>
#include <QPushButton>

#include "base/background.h"
#include "capture/image_decoding.h"
#include "core/ui/accessible_roles.h"
#include "core/ui/icon.h"
#include "core/ui/theme.h"
#include "tools/feedback/report_texts.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kRadius = 6;
constexpr int kRemove = 20;
/// The picture is drawn small, yet sharp on every screen.
constexpr int kSharpness = 3;

QImage scaledToCover(const QImage& picture) {
  if (picture.isNull()) return {};
  const QImage scaled =
      picture.scaled(SnipThumbnail::kSize * kSharpness, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
  return scaled.copy(QRect(QPoint(), SnipThumbnail::kSize * kSharpness));
}

/// A cross on a disc, which is seen on any picture.
class RemoveButton final : public QPushButton {
 public:
  explicit RemoveButton(QWidget* parent) : QPushButton(parent) {
    setFixedSize(kRemove, kRemove);
    setFocusPolicy(Qt::NoFocus);
    setToolTip(ReportTexts::removeSnipHelp());
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    const Theme& theme = themeOf(*this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(theme.edge, 1));
    painter.setBrush(underMouse() ? theme.hover : theme.card);
    painter.drawEllipse(QRectF(rect()).adjusted(1, 1, -1, -1));
    paintSymbol(painter, u"xmark"_s, QRectF(rect()).adjusted(5, 5, -5, -5), theme.text);
  }
};

}  // namespace

SnipThumbnail::SnipThumbnail(const QByteArray& png, QWidget* parent)
    : QWidget(parent), remove_(new RemoveButton(this)) {
  setFixedSize(kSize);
  setAccessibleRole(*this, QAccessible::Graphic);
  remove_->move(kSize.width() - kRemove - 2, 2);
  connect(remove_, &QPushButton::clicked, this, &SnipThumbnail::removed);
  runInBackground(
      decoding_, [png](const std::stop_token&) { return scaledToCover(decodedImage(png)); },
      [this](const QImage& picture) {
        picture_ = picture;
        update();
      });
}

void SnipThumbnail::setNumber(int number) {
  setAccessibleName(u"Snip %1"_s.arg(number));
  remove_->setAccessibleName(u"%1, snip %2"_s.arg(ReportTexts::removeSnipHelp()).arg(number));
}

void SnipThumbnail::setRemovable(bool removable) { remove_->setVisible(removable); }

void SnipThumbnail::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
  const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
  QPainterPath shape;
  shape.addRoundedRect(frame, kRadius, kRadius);
  painter.fillPath(shape, theme.raised);
  painter.save();
  painter.setClipPath(shape);
  if (!picture_.isNull())
    painter.drawImage(rect(), picture_);
  else
    paintSymbol(painter, u"photo"_s, QRectF(rect()).adjusted(24, 12, -24, -12), theme.secondary);
  painter.restore();
  painter.setPen(QPen(theme.edge, 1));
  painter.drawPath(shape);
}
