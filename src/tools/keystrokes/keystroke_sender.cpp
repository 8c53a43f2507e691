#include "tools/keystrokes/keystroke_sender.h"

#include <chrono>

#include "base/logging.h"
#include "platform/permissions.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qsizetype kChunk = 20;
constexpr auto kAfterChunk = 3ms;
constexpr auto kBeforeReturn = 80ms;
constexpr std::uint32_t kReturnKey = 36;
constexpr std::uint32_t kCommandMask = 0x0100;

KeyEventError notPermitted() { return {u"The system does not let Vantle type"_s, KeyEventError::Kind::notPermitted}; }

}  // namespace

void KeystrokeSender::send(const QString& text, bool pressReturn, KeyEvents::Done done, std::stop_token stop) {
  perform(sequence(text, pressReturn), std::move(stop), std::move(done));
}

void KeystrokeSender::sendCommandKey(std::uint32_t keyCode, KeyEvents::Done done) {
  perform({PressKey{keyCode, kCommandMask}}, {}, std::move(done));
}

void KeystrokeSender::perform(KeySequence steps, std::stop_token stop, KeyEvents::Done done) {
  const auto report = [done = std::move(done)](const std::expected<void, KeyEventError>& result) {
    if (!result) qCWarning(lcTyping).noquote() << result.error().description();
    if (done) done(result);
  };
  if (!mayType()) return report(std::unexpected(notPermitted()));
  if (steps.empty()) return report({});
  events_.perform(std::move(steps), std::move(stop), report);
}

KeySequence KeystrokeSender::sequence(const QString& text, bool pressReturn) {
  KeySequence steps;
  for (qsizetype start = 0; start < text.size(); start += kChunk) {
    steps.emplace_back(TypeText{text.mid(start, kChunk)});
    steps.emplace_back(Pause{kAfterChunk});
  }
  if (pressReturn) {
    steps.emplace_back(Pause{kBeforeReturn});
    steps.emplace_back(PressKey{kReturnKey, 0});
  }
  return steps;
}

bool KeystrokeSender::mayType() {
  if (permissions_.isAccessibilityTrusted()) return true;
  // A permission that has just been granted counts from the next action on; the focus may have moved while it was
  // given.
  if (!permissions_.isAccessibilityTrusted()) permissions_.promptForAccessibility();
  return false;
}
