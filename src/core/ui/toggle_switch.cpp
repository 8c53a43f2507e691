#include "core/ui/toggle_switch.h"

#include <QPainter>

#include "core/ui/theme.h"

namespace {

constexpr QSize kTrack(36, 20);
constexpr qreal kRingLine = 2;

}  // namespace

ToggleSwitch::ToggleSwitch(const QString& name, QWidget* parent) : QCheckBox(parent) {
  setAccessibleName(name);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize ToggleSwitch::sizeHint() const { return kTrack.grownBy(QMargins(kRing, kRing, kRing, kRing)); }

bool ToggleSwitch::hitButton(const QPoint& position) const { return rect().contains(position); }

void ToggleSwitch::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setOpacity(isEnabled() ? 1.0 : 0.4);
  const QRectF track(QPointF((width() - kTrack.width()) / 2.0, (height() - kTrack.height()) / 2.0), kTrack);
  const double radius = track.height() / 2;
  if (hasFocus()) {
    // A gap sets the ring off from a track that is in the accent too.
    painter.setPen(QPen(theme.accent, kRingLine));
    const qreal out = kRing - kRingLine / 2;
    painter.drawRoundedRect(track.adjusted(-out, -out, out, out), radius + out, radius + out);
  }
  painter.setPen(Qt::NoPen);
  painter.setBrush(isChecked() ? theme.selection : theme.switchOff);
  painter.drawRoundedRect(track, radius, radius);
  QRectF knob = track.adjusted(2, 2, -2, -2);
  knob.setWidth(knob.height());
  if (isChecked()) knob.moveRight(track.right() - 2);
  painter.setBrush(QColor(0, 0, 0, 40));
  painter.drawEllipse(knob.translated(0, 0.75));
  painter.setBrush(Qt::white);
  painter.drawEllipse(knob);
}
