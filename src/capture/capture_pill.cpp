#include "capture/capture_pill.h"

#include <QPainter>

#include "core/ui/icon.h"
#include "core/ui/theme.h"

namespace {

constexpr int kHeight = 32;
constexpr int kIcon = 16;
constexpr int kPadding = 12;
constexpr int kGap = 8;
constexpr int kFadeMilliseconds = 120;

}  // namespace

CapturePill::CapturePill(QString label, QString icon, QWidget* parent)
    : QWidget(parent), label_(std::move(label)), icon_(std::move(icon)) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setAccessibleName(label_);
  setFont(Theme::calloutFont());
  fade_.setDuration(kFadeMilliseconds);
  connect(&fade_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
    opacity_ = value.toDouble();
    update();
  });
  resize(sizeHint());
}

QSize CapturePill::sizeHint() const {
  return {kPadding + kIcon + kGap + fontMetrics().horizontalAdvance(label_) + kPadding, kHeight};
}

void CapturePill::fadeTo(double opacity, bool animated) {
  fade_.stop();
  fade_.setStartValue(animated ? opacity_ : opacity);
  fade_.setEndValue(opacity);
  if (animated) return fade_.start();
  opacity_ = opacity;
  update();
}

void CapturePill::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setOpacity(opacity_);
  const QRectF capsule = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.setPen(theme.edge);
  painter.setBrush(theme.card);
  painter.drawRoundedRect(capsule, capsule.height() / 2, capsule.height() / 2);
  paintSymbol(painter, icon_, QRectF(kPadding, (kHeight - kIcon) / 2.0, kIcon, kIcon), theme.accent);
  painter.setPen(theme.text);
  painter.drawText(rect().adjusted(kPadding + kIcon + kGap, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft, label_);
}
