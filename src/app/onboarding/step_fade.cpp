#include "app/onboarding/step_fade.h"

#include <QPainter>

namespace {

constexpr int kMilliseconds = 150;

}  // namespace

StepFade::StepFade(QWidget& over) : QWidget(over.parentWidget()), over_(over) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  hide();
  opacity_.setDuration(kMilliseconds);
  opacity_.setStartValue(1.0);
  opacity_.setEndValue(0.0);
  connect(&opacity_, &QVariantAnimation::valueChanged, this, [this] { update(); });
  connect(&opacity_, &QVariantAnimation::finished, this, [this] {
    before_ = {};
    hide();
  });
}

void StepFade::start() {
  opacity_.stop();
  before_ = over_.window()->grab(QRect(over_.mapTo(over_.window(), QPoint()), over_.size()));
  setGeometry(over_.geometry());
  show();
  raise();
  opacity_.start();
}

void StepFade::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setOpacity(opacity_.currentValue().toDouble());
  painter.drawPixmap(0, 0, before_);
}
