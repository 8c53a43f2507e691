#include "app/usage/meter_view.h"

#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

namespace {

constexpr int kBarHeight = 6;
/// What a service may call a counter has no bound; the row has.
constexpr int kLabelWidth = 220;

QLabel* plainLabel(QLabel* label) {
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(false);
  return label;
}

}  // namespace

MeterBar::MeterBar(QWidget* parent) : QProgressBar(parent) {
  setTextVisible(false);
  setFixedHeight(kBarHeight);
}

QSize MeterBar::sizeHint() const { return {20 * Theme::kGrid, kBarHeight}; }

void MeterBar::setMeter(const UsageMeter& meter) {
  fraction_ = meter.fraction();
  isUsedUp_ = meter.isUsedUp();
  const auto limit = std::clamp<qint64>(meter.usage.limit, 1, std::numeric_limits<int>::max());
  setRange(0, static_cast<int>(limit));
  setValue(isUsedUp_ ? maximum() : qRound(fraction_ * maximum()));
  setAccessibleName(meter.label);
  setAccessibleDescription(meter.remaining());
  update();
}

void MeterBar::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const QRectF track = rect();
  const qreal radius = track.height() / 2;
  painter.setBrush(theme.hairline);
  painter.drawRoundedRect(track, radius, radius);
  if (fraction_ <= 0) return;
  // Never less than a dot, which a first use deserves.
  const qreal width = std::max(track.height(), track.width() * fraction_);
  painter.setBrush(isUsedUp_ ? theme.failure : theme.accent);
  painter.drawRoundedRect(QRectF(track.topLeft(), QSizeF(width, track.height())), radius, radius);
}

MeterView::MeterView(QWidget* parent)
    : QWidget(parent),
      label_(plainLabel(new QLabel)),
      counts_(plainLabel(makeDetailLabel({}))),
      bar_(new MeterBar),
      remaining_(plainLabel(makeDetailLabel({}))) {
  label_->setFont(Theme::rowFont());
  auto* head = new QHBoxLayout;
  head->addWidget(label_, 1);
  head->addWidget(counts_);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(6);
  column->addLayout(head);
  column->addWidget(bar_);
  column->addWidget(remaining_);
}

void MeterView::setMeter(const UsageMeter& meter) {
  label_->setText(label_->fontMetrics().elidedText(meter.label, Qt::ElideRight, kLabelWidth));
  counts_->setText(meter.counts());
  bar_->setMeter(meter);
  remaining_->setText(meter.remaining());
}
