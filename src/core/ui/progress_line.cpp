#include "core/ui/progress_line.h"

#include <QPainter>

#include <cmath>

#include "core/ui/theme.h"

namespace {

constexpr int kHeight = 6;
constexpr int kSteps = 1000;

}  // namespace

ProgressLine::ProgressLine(const QString& name, QWidget* parent) : QProgressBar(parent) {
  setAccessibleName(name);
  setRange(0, kSteps);
  setTextVisible(false);
  setFixedHeight(kHeight);
}

void ProgressLine::setFraction(double fraction) { setValue(static_cast<int>(std::lround(fraction * kSteps))); }

QSize ProgressLine::sizeHint() const { return {30 * Theme::kGrid, kHeight}; }

void ProgressLine::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const QRectF track(rect());
  painter.setBrush(theme.raised);
  painter.drawRoundedRect(track, track.height() / 2, track.height() / 2);
  if (value() == 0) return;
  QRectF done = track;
  // Never narrower than its round ends.
  done.setWidth(std::max(track.height(), track.width() * value() / kSteps));
  painter.setBrush(theme.accent);
  painter.drawRoundedRect(done, track.height() / 2, track.height() / 2);
}
