#include "platform/portal/portal_key_steps.h"

#include <algorithm>
#include <array>

#include "platform/carbon_modifiers.h"
#include "platform/key_codes.h"
#include "platform/typing_steps.h"

using namespace Qt::StringLiterals;

namespace {

/// Between X's key codes and those of the kernel.
constexpr std::uint32_t kFirstPosition = 8;

struct HeldKey {
  std::uint32_t carbon;
  std::uint32_t keysym;
};
/// Command is the modifier of programs' own shortcuts, which is Ctrl here.
constexpr std::array kHeldKeys = {
    HeldKey{carbon::kControl | carbon::kCommand, 0xffe3},
    HeldKey{carbon::kOption, 0xffe9},
    HeldKey{carbon::kShift, 0xffe1},
};

KeyEventError refusal(const QString& reason) { return {reason, KeyEventError::Kind::refused}; }

std::expected<PortalStep, KeyEventError> textStep(const std::u32string& text, const Layout& layout) {
  PortalStep step{.text = text};
  for (const char32_t character : text) {
    const auto keysym = layout(character);
    if (!keysym)
      return std::unexpected(refusal(u"The desktop types only what is on the keyboard’s layout, and “%1” is not"_s.arg(
          QString::fromUcs4(&character, 1))));
    for (const bool isPressed : {true, false}) step.keys.push_back({PortalKey::By::keysym, *keysym, isPressed});
  }
  return step;
}

/// By its letter; at its position where the layout has no such letter.
PortalKey keyOf(const KeyCode& known, const Layout& layout) {
  const bool isLetter = known.keysym < 0x100;
  if (isLetter && !layout(known.keysym)) return {PortalKey::By::evdevCode, known.position - kFirstPosition};
  return {PortalKey::By::keysym, known.keysym};
}

std::expected<PortalStep, KeyEventError> chordStep(const PressKey& chord, const Layout& layout) {
  const KeyCode* known = findKeyCode(chord.keyCode);
  if (known == nullptr) return std::unexpected(refusal(u"There is no such key here"_s));
  PortalStep step;
  for (const HeldKey& held : kHeldKeys)
    if (chord.carbonModifiers & held.carbon) step.keys.push_back({PortalKey::By::keysym, held.keysym});
  step.keys.push_back(keyOf(*known, layout));
  for (std::size_t pressed = step.keys.size(); pressed > 0; --pressed) {
    PortalKey released = step.keys[pressed - 1];
    released.isPressed = false;
    step.keys.push_back(released);
  }
  return step;
}

std::expected<PortalStep, KeyEventError> portalStep(const TypingStep& step, const Layout& layout) {
  if (const auto* text = std::get_if<std::u32string>(&step)) return textStep(*text, layout);
  if (const auto* chord = std::get_if<PressKey>(&step)) return chordStep(*chord, layout);
  return PortalStep{.pause = std::get<Pause>(step).duration};
}

}  // namespace

std::expected<std::vector<PortalStep>, KeyEventError> portalSteps(const KeySequence& sequence, const Layout& layout) {
  std::vector<PortalStep> steps;
  for (const TypingStep& step : typingSteps(sequence)) {
    auto keys = portalStep(step, layout);
    if (!keys) return std::unexpected(keys.error());
    steps.push_back(*std::move(keys));
  }
  return steps;
}

QString textFrom(const std::vector<PortalStep>& steps, std::size_t first, std::size_t written) {
  std::u32string text;
  for (std::size_t step = first; step < steps.size(); ++step) text += steps[step].text;
  text.erase(0, written);
  return QString::fromStdU32String(text);
}
