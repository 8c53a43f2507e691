#include "core/ui/toggle_switch.h"

#include <QAccessibleWidget>
#include <QPainter>

#include "core/ui/theme.h"

namespace {

constexpr QSize kTrack(36, 20);
constexpr qreal kRingLine = 2;

/// A check box to screen readers, whose "toggle" is a click: whoever listens for clicks hears it as well. Its place is
/// all of the switch, not that of a small mark.
class AccessibleSwitch final : public QAccessibleWidget {
 public:
  explicit AccessibleSwitch(ToggleSwitch* control) : QAccessibleWidget(control, QAccessible::CheckBox) {}

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.checkable = true;
    state.checked = control()->isChecked();
    return state;
  }

  QStringList actionNames() const override {
    if (!control()->isEnabled()) return {};
    return {toggleAction(), setFocusAction()};
  }

  void doAction(const QString& name) override {
    if (name == toggleAction())
      control()->click();
    else
      QAccessibleWidget::doAction(name);
  }

 private:
  ToggleSwitch* control() const { return static_cast<ToggleSwitch*>(widget()); }
};

QAccessibleInterface* accessibleSwitch(const QString&, QObject* object) {
  auto* control = qobject_cast<ToggleSwitch*>(object);
  return control ? new AccessibleSwitch(control) : nullptr;
}

}  // namespace

ToggleSwitch::ToggleSwitch(const QString& name, QWidget* parent) : QCheckBox(parent) {
  static const bool installed = (QAccessible::installFactory(accessibleSwitch), true);
  Q_UNUSED(installed)
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
