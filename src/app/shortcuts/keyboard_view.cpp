#include "app/shortcuts/keyboard_view.h"

#include <QPainter>

#include <algorithm>

#include "app/shortcuts/key_button.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

QRect cellOf(const KeyPlace& place) {
  return QRectF(place.area.topLeft() * kKeyPitch, place.area.size() * kKeyPitch).toRect();
}

}  // namespace

KeyboardView::KeyboardView(KeyboardLayoutModel& model, QWidget* parent) : QWidget(parent), model_(model) {
  setFixedSize(sizeHint());
  setAccessibleName(u"Keyboard"_s);
  connect(&model_, &KeyboardLayoutModel::changed, this, &KeyboardView::arrange);
  connect(&model_, &KeyboardLayoutModel::heldChanged, this, &KeyboardView::follow);
  arrange();
}

QSize KeyboardView::sizeHint() const { return (kKeyboardUnits * kKeyPitch).toSize(); }

KeyButton* KeyboardView::button(std::size_t key) const {
  const auto found = buttons_.find(model_.keys()[key].place.keyCode);
  return found == buttons_.end() || model_.keys()[key].entries.empty() ? nullptr : found->second;
}

KeyButton* KeyboardView::firstButton() const {
  const auto first = std::ranges::find_if(model_.keys(), [](const auto& key) { return !key.entries.empty(); });
  return first == model_.keys().end() ? nullptr : buttons_.at(first->place.keyCode);
}

void KeyboardView::pointAt(std::optional<std::size_t> key) {
  const KeyButton* pointedAt = key ? button(*key) : nullptr;
  for (const auto& [keyCode, button] : buttons_) button->setPointedAt(button == pointedAt);
}

void KeyboardView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  for (const auto& key : model_.keys())
    if (key.entries.empty()) paintKey(painter, cellOf(key.place), faceOf(model_, key), themeOf(*this));
}

/// Buttons are kept for their key, so that the focus stays where it is when a shortcut moves.
void KeyboardView::arrange() {
  for (const auto& [keyCode, button] : buttons_) {
    const auto place = placeOf(keyCode);
    if (!place || model_.keys()[*place].entries.empty()) button->hide();
  }
  QWidget* before = this;
  for (const auto& key : model_.keys()) {
    if (key.entries.empty()) continue;
    KeyButton*& button = buttons_[key.place.keyCode];
    if (!button) button = makeButton(key.place.keyCode);
    button->setGeometry(cellOf(key.place));
    button->setAccessibleName(model_.spokenName(key));
    QStringList details;
    for (const std::size_t entry : key.entries)
      details.append(QStringList{model_.entries()[entry].summary} + model_.entries()[entry].obstacles);
    button->setAccessibleDescription(details.join(u'\n'));
    button->show();
    setTabOrder(before, button);
    before = button;
  }
  follow();
}

void KeyboardView::follow() {
  for (const auto& key : model_.keys())
    if (!key.entries.empty()) buttons_.at(key.place.keyCode)->setFace(faceOf(model_, key));
  update();
}

KeyButton* KeyboardView::makeButton(std::uint32_t keyCode) {
  auto* button = new KeyButton(this);
  const auto tell = [this, keyCode](auto signal) {
    return [this, keyCode, signal] {
      if (const auto place = placeOf(keyCode)) (this->*signal)(*place);
    };
  };
  connect(button, &KeyButton::pointed, this, tell(&KeyboardView::pointed));
  connect(button, &KeyButton::left, this, tell(&KeyboardView::left));
  connect(button, &KeyButton::clicked, this, tell(&KeyboardView::chosen));
  connect(button, &KeyButton::opened, this, tell(&KeyboardView::opened));
  connect(button, &KeyButton::entered, this, tell(&KeyboardView::entered));
  connect(button, &KeyButton::focused, this,
          [this, keyCode](Qt::FocusReason reason) { Q_EMIT focused(*placeOf(keyCode), reason); });
  connect(button, &KeyButton::stepped, this,
          [this, keyCode](KeyboardLayoutModel::Direction direction) { step(keyCode, direction); });
  return button;
}

std::optional<std::size_t> KeyboardView::placeOf(std::uint32_t keyCode) const {
  const auto found = std::ranges::find(model_.keys(), keyCode, [](const auto& key) { return key.place.keyCode; });
  return found == model_.keys().end() ? std::nullopt
                                      : std::optional<std::size_t>(std::distance(model_.keys().begin(), found));
}

void KeyboardView::step(std::uint32_t keyCode, KeyboardLayoutModel::Direction direction) {
  const auto next = model_.neighbour(*placeOf(keyCode), direction);
  if (next) button(*next)->setFocus(Qt::TabFocusReason);
}
