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

/// What a change of the map needs to reach the programs that wait for it; 20 ms were always enough.
constexpr auto kSettle = 25ms;
/// For programs that read the map at once but are busy right now.
constexpr auto kLongestRead = 2s;
/// After the first read a program that does so while it looks at its keys has looked at those before.
constexpr auto kAfterRead = 10ms;
/// Between typing with a bank and refilling it, where nothing tells whether the program has read the map.
constexpr auto kBlindWait = 250ms;
/// Given back earlier, the last characters are lost in programs that are slow to look at them.
constexpr auto kBeforeGivingBack = 600ms;

}  // namespace

std::unique_ptr<X11Typist> X11Typist::open() {
  auto keyboard = XTestKeyboard::open();
  if (!keyboard) return nullptr;
  return std::unique_ptr<X11Typist>(new X11Typist(std::move(keyboard)));
}

X11Typist::X11Typist(std::unique_ptr<XTestKeyboard> keyboard)
    : keyboard_(std::move(keyboard)), modifiers_(*keyboard_), borrowed_(keyboard_->connection(), keyboard_->root()) {
  borrowed_.recover();
}

X11Typist::Result X11Typist::perform(const KeySequence& sequence, const std::stop_token& stop) {
  map_ = KeyboardMap::read(keyboard_->connection(), borrowed_.lent());
  if (!map_) return std::unexpected(KeyEventError{u"The keyboard's map could not be read"_s});
  borrowed_.choose(*map_);
  skipped_ = 0;
  const bool free = modifiers_.lift(*map_, borrowed_.neutralKey(), stop);
  pacing::sleep(kSettle);
  if (free) typeSteps(typingSteps(sequence), stop);
  modifiers_.giveBack(*map_);
  reads_.reset();
  if (isBroken()) return std::unexpected(KeyEventError{u"The connection to the display was lost"_s});
  if (!free) return std::unexpected(KeyEventError{u"Nothing was typed: a modifier key stayed held down"_s});
  if (stop.stop_requested()) return std::unexpected(KeyEventError{u"Typing was stopped"_s});
  if (skipped_ > 0) return std::unexpected(KeyEventError{u"%1 characters could not be typed"_s.arg(skipped_)});
  return {};
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
      typeText(steps, step);
    keyboard_->sync();
    modifiers_.liftNewlyHeld(*map_);
  }
}

void X11Typist::typeText(const std::vector<TypingStep>& steps, std::size_t step) {
  const auto& text = std::get<std::u32string>(steps[step]);
  for (std::size_t offset = 0; offset < text.size(); ++offset) {
    auto stroke = strokeFor(text[offset]);
    if (!stroke && lend(steps, step, offset)) stroke = strokeFor(text[offset]);
    if (stroke)
      typeCharacter(*stroke);
    else
      ++skipped_;
  }
  holdModifiers(0);
  if (borrowed_.isLending()) lastLent_ = Clock::now();
}

std::optional<KeyStroke> X11Typist::strokeFor(char32_t character) const {
  const auto own = map_->find(character);
  return own ? own : borrowed_.find(character, bank_);
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

/// Puts the next characters that have no key on the other bank, whose own have been typed long enough ago.
bool X11Typist::lend(const std::vector<TypingStep>& steps, std::size_t step, std::size_t offset) {
  holdModifiers(0);
  keyboard_->sync();
  const std::size_t next = borrowed_.isLending() ? (bank_ + 1) % BorrowedKeys::kBanks : 0;
  const auto characters = missingFrom(steps, step, offset, borrowed_.capacity(next));
  if (characters.empty()) return false;
  watchFocused();
  waitUntilRead();
  readsAtChange_ = reads_ ? reads_->count() : 0;
  if (!borrowed_.fill(next, characters)) {
    qCWarning(lcTyping) << "The server refused a change of the keyboard's map";
    return false;
  }
  bank_ = next;
  settle();
  return true;
}

std::vector<char32_t> X11Typist::missingFrom(const std::vector<TypingStep>& steps, std::size_t step, std::size_t offset,
                                             std::size_t most) const {
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

/// A bank that was typed with before the last change may be refilled once the program has read the map since that
/// change: it has then looked at all keys typed before.
void X11Typist::waitUntilRead() {
  if (!borrowed_.isLending()) return;
  if (!reads_ || !reads_->waitForMore(readsAtChange_, kLongestRead))
    pacing::sleep(kBlindWait);
  else if (!readsAtOnce_)
    pacing::sleep(kAfterRead);
}

void X11Typist::settle() {
  const auto start = Clock::now();
  if (reads_ && reads_->waitForMore(readsAtChange_, readsAtOnce_ ? kLongestRead : kSettle)) {
    readsAtOnce_ = true;
    reads_->waitForState(kSettle);
  }
  pacing::sleep(std::max<Clock::duration>(0ms, start + kSettle - Clock::now()));
}

void X11Typist::watchFocused() {
  const xcb_window_t window = focusedWindow();
  if (reads_ && reads_->window() == window) return;
  reads_ = window == XCB_NONE ? nullptr : MapReads::watch(window);
  readsAtChange_ = 0;
  readsAtOnce_ = false;
  // What was typed with borrowed keys before is not known to have been read.
  if (borrowed_.isLending()) pacing::sleep(kBlindWait);
}

xcb_window_t X11Typist::focusedWindow() const {
  xcb_connection_t* connection = keyboard_->connection();
  const auto cookie = xcb_get_input_focus(connection);
  const XcbReply<xcb_get_input_focus_reply_t> focus(xcb_get_input_focus_reply(connection, cookie, nullptr));
  if (!focus) return XCB_NONE;
  if (focus->focus != XCB_INPUT_FOCUS_POINTER_ROOT && focus->focus != keyboard_->root()) return focus->focus;
  const auto pointerCookie = xcb_query_pointer(connection, keyboard_->root());
  const XcbReply<xcb_query_pointer_reply_t> pointer(xcb_query_pointer_reply(connection, pointerCookie, nullptr));
  return pointer ? pointer->child : XCB_NONE;
}

std::optional<Clock::time_point> X11Typist::giveBackTime() const {
  if (!borrowed_.isLending()) return {};
  return lastLent_ + kBeforeGivingBack;
}

void X11Typist::giveBackKeys() { borrowed_.giveBack(); }
