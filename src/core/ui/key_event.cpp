#include "core/ui/key_event.h"

#include <QKeyEvent>

#include <array>

#include "platform/key_codes.h"

namespace {

ReportedKey reported(const QKeyEvent& event) { return {event.key(), event.nativeScanCode(), event.nativeVirtualKey()}; }

QString withoutModifiers(int qtKey) {
  const bool isCharacter = qtKey > 0 && qtKey < Qt::Key_Escape;
  return isCharacter ? QString::fromUcs4(std::array{static_cast<char32_t>(qtKey)}.data(), 1).toLower() : QString();
}

}  // namespace

KeyPress keyPress(const QKeyEvent& event) {
  const Qt::KeyboardModifiers held = event.modifiers();
  KeyPress press;
  press.keyCode = macKeyCode(reported(event)).value_or(KeyPress::kUnknownKey);
  // Qt's Control is the Command key on macOS and Ctrl elsewhere, its Meta the other one of the two.
  press.command = held.testFlag(Qt::ControlModifier);
  press.control = held.testFlag(Qt::MetaModifier);
  press.option = held.testFlag(Qt::AltModifier);
  press.shift = held.testFlag(Qt::ShiftModifier);
  press.characters = event.text();
  press.charactersIgnoringModifiers = withoutModifiers(event.key());
  return press;
}

KeyPress textPress(const QString& text) {
  KeyPress press;
  press.characters = text;
  return press;
}

std::optional<Hotkey> recordedHotkey(const QKeyEvent& event) {
  const auto keyCode = macKeyCode(reported(event));
  if (!keyCode) return std::nullopt;
  return Hotkey{*keyCode, carbonModifiers(event.modifiers())};
}
