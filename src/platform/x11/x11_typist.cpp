#include "platform/x11/x11_typist.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <unordered_set>

#include "base/logging.h"
#include "platform/carbon_modifiers.h"
#include "platform/key_codes.h"
#include "platform/x11/pacing.h"
#include "platform/x11/xcb_reply.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

/// For the first key of XTEST after those of another keyboard: programs read the map when the keyboard changes.
constexpr auto kSettle = 25ms;

X11Typist::Result refused(const QString& reason) {
  return std::unexpected(KeyEventError{reason, KeyEventError::Kind::refused});
}

X11Typist::Result stopped() { return std::unexpected(KeyEventError{u"Typing was stopped"_s}); }

bool isChord(const KeyStep& step) {
  const auto* key = std::get_if<PressKey>(&step);
  return key != nullptr && key->carbonModifiers != 0;
}

}  // namespace

std::unique_ptr<X11Typist> X11Typist::open() {
  auto keyboard = XTestKeyboard::open();
  if (!keyboard) return nullptr;
  return std::unique_ptr<X11Typist>(new X11Typist(std::move(keyboard)));
}

X11Typist::X11Typist(std::unique_ptr<XTestKeyboard> keyboard)
    : keyboard_(std::move(keyboard)), modifiers_(*keyboard_), lender_(*keyboard_) {}

X11Typist::Result X11Typist::perform(const KeySequence& sequence, const std::stop_token& stop) {
  if (stop.stop_requested()) return stopped();
  map_ = KeyboardMap::read(keyboard_->connection(), lender_.lent());
  if (!map_) return refused(u"The keyboard's map could not be read"_s);
  lender_.prepare(*map_);
  skipped_ = 0;
  const auto keys = std::ranges::any_of(sequence, isChord) ? HeldModifiers::Keys::all : HeldModifiers::Keys::modifiers;
  const bool free = modifiers_.lift(*map_, lender_.neutralKey(), keys, stop);
  pacing::sleep(kSettle);
  const bool heard = free && keyboard_->awaitUngrabbed(stop);
  if (heard) typeSteps(typingSteps(sequence), stop);
  lender_.finish();
  modifiers_.giveBack(*map_);
  if (isBroken()) return std::unexpected(KeyEventError{u"The connection to the display was lost"_s});
  if (stop.stop_requested()) return stopped();
  if (!free) return refused(u"A modifier key stayed held down"_s);
  if (!heard)
    return refused(u"Another program keeps the keyboard to itself, as a locked screen or an open menu does"_s);
  if (skipped_ > 0) return std::unexpected(KeyEventError{u"%1 characters could not be typed"_s.arg(skipped_)});
  return {};
}

std::optional<std::chrono::steady_clock::time_point> X11Typist::dueTime() const {
  const auto keys = lender_.dueTime();
  const auto modifiers = modifiers_.dueTime();
  return keys && modifiers ? std::min(*keys, *modifiers) : keys ? keys : modifiers;
}

void X11Typist::attend() {
  if (const auto due = lender_.dueTime(); due && *due <= std::chrono::steady_clock::now()) lender_.giveBackIfRead();
  if (modifiers_.dueTime()) modifiers_.attend(*map_);
}

void X11Typist::finish() {
  lender_.giveBackSoon();
  if (modifiers_.dueTime()) modifiers_.attend(*map_);
}

void X11Typist::typeSteps(const std::vector<TypingStep>& steps, const std::stop_token& stop) {
  for (std::size_t step = 0; step < steps.size() && !stop.stop_requested() && !isBroken(); ++step) {
    if (const auto* pause = std::get_if<Pause>(&steps[step])) {
      pacing::sleep(pause->duration, stop);
      continue;
    }
    if (const auto* key = std::get_if<PressKey>(&steps[step]))
      pressKey(*key);
    else
      typeText(steps, step, stop);
    keyboard_->sync();
    modifiers_.liftNewlyHeld(*map_);
  }
}

void X11Typist::typeText(const std::vector<TypingStep>& steps, std::size_t step, const std::stop_token& stop) {
  const auto& text = std::get<std::u32string>(steps[step]);
  for (std::size_t offset = 0; offset < text.size(); ++offset) {
    auto stroke = strokeFor(text[offset]);
    if (!stroke) {
      holdModifiers(0);
      lender_.lend(missingFrom(steps, step, offset), stop);
      stroke = strokeFor(text[offset]);
    }
    if (stroke)
      typeCharacter(*stroke);
    else
      ++skipped_;
  }
  holdModifiers(0);
}

std::optional<KeyStroke> X11Typist::strokeFor(char32_t character) const {
  const auto own = map_->find(character);
  return own ? own : lender_.find(character);
}

void X11Typist::typeCharacter(KeyStroke stroke) {
  holdModifiers(stroke.modifiers);
  keyboard_->tap(stroke.code);
}

void X11Typist::holdModifiers(std::uint8_t modifiers) {
  const auto change = [&](std::uint8_t modifier, xcb_keycode_t key) {
    if (((held_ ^ modifiers) & modifier) == 0) return;
    if ((modifiers & modifier) != 0)
      keyboard_->press(key);
    else
      keyboard_->release(key);
  };
  change(XCB_MOD_MASK_SHIFT, map_->shiftKey());
  change(map_->level3Modifier(), map_->level3Key());
  held_ = modifiers;
}

void X11Typist::pressKey(const PressKey& key) {
  const KeyCode* known = findKeyCode(key.keyCode);
  if (known == nullptr) {
    ++skipped_;
    return;
  }
  xcb_keycode_t code = map_->findSymbol(known->keysym);
  if (code == 0) code = static_cast<xcb_keycode_t>(known->position);
  std::vector<xcb_keycode_t> held;
  if (key.carbonModifiers & (carbon::kControl | carbon::kCommand)) held.push_back(map_->findSymbol(XKB_KEY_Control_L));
  if (key.carbonModifiers & carbon::kOption) held.push_back(map_->findSymbol(XKB_KEY_Alt_L));
  if (key.carbonModifiers & carbon::kShift) held.push_back(map_->shiftKey());
  for (const xcb_keycode_t modifier : held) keyboard_->press(modifier);
  keyboard_->tap(code);
  for (const xcb_keycode_t modifier : held) keyboard_->release(modifier);
}

/// The next characters without a key of their own, as many as can be lent at once.
std::vector<char32_t> X11Typist::missingFrom(const std::vector<TypingStep>& steps, std::size_t step,
                                             std::size_t offset) const {
  const std::size_t most = lender_.capacity();
  std::vector<char32_t> missing;
  std::unordered_set<char32_t> seen;
  for (; step < steps.size(); ++step, offset = 0) {
    const auto* text = std::get_if<std::u32string>(&steps[step]);
    for (; text != nullptr && offset < text->size(); ++offset) {
      const char32_t character = (*text)[offset];
      if (map_->find(character) || !seen.insert(character).second) continue;
      if (missing.size() == most) return missing;
      missing.push_back(character);
    }
  }
  return missing;
}
