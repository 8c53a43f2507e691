#include "app/shortcuts/key_button.h"

#include <QFocusEvent>
#include <QPainter>

#include <optional>

#include "core/hotkeys/key_press.h"
#include "core/ui/key_event.h"
#include "core/ui/theme.h"

namespace {

std::optional<KeyboardLayoutModel::Direction> directionOf(std::uint32_t keyCode) {
  using enum KeyboardLayoutModel::Direction;
  switch (keyCode) {
    case keycode::kLeft:
      return left;
    case keycode::kRight:
      return right;
    case keycode::kUp:
      return up;
    case keycode::kDown:
      return down;
    default:
      return std::nullopt;
  }
}

}  // namespace

KeyButton::KeyButton(QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_Hover);
}

void KeyButton::setFace(const KeyFace& face) {
  if (face == face_) return;
  face_ = face;
  update();
}

void KeyButton::setPointedAt(bool pointedAt) {
  if (std::exchange(pointedAt_, pointedAt) != pointedAt) update();
}

void KeyButton::paintEvent(QPaintEvent*) {
  KeyFace face = face_;
  face.isHovered = underMouse();
  face.isFocused = hasFocus() || pointedAt_;
  QPainter painter(this);
  paintKey(painter, rect(), face, themeOf(*this));
}

void KeyButton::keyPressEvent(QKeyEvent* event) {
  const KeyPress press = keyPress(*event);
  if (const auto direction = directionOf(press.keyCode))
    Q_EMIT stepped(*direction);
  else if (press.keyCode == keycode::kReturn || press.keyCode == keycode::kKeypadEnter)
    Q_EMIT opened();
  else if (press.keyCode == keycode::kSpace)
    Q_EMIT entered();
  else
    event->ignore();
}

void KeyButton::enterEvent(QEnterEvent*) { Q_EMIT pointed(); }

void KeyButton::leaveEvent(QEvent*) { Q_EMIT left(); }

void KeyButton::focusInEvent(QFocusEvent* event) {
  QAbstractButton::focusInEvent(event);
  Q_EMIT focused(event->reason());
}
