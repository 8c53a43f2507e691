#include "tools/text_transform/typing_selection_replacer.h"

#include <algorithm>

#include "base/clock.h"
#include "platform/selected_text.h"
#include "tools/keystrokes/keystroke_sender.h"

using namespace std::chrono_literals;

namespace {

/// How often is looked whether the result is still wanted, and where keys go.
constexpr auto kBetweenLooks = 20ms;
/// Until the window behind our panel has the keyboard again: 140 ms.
constexpr int kSettle = 7;
/// A panel that is slow to go, or a window that is slow to come back, is waited for half a second more.
constexpr int kMostLooks = kSettle + 25;
/// Programs look at the last keys a little later.
constexpr auto kBeforeRestore = 120ms;

bool isLineBreak(QChar character) { return character == u'\n' || character == u'\r'; }

/// A Return at the end would send a message, where the selection had none at its end.
QString withoutReturnAtEnd(const QString& result, const Selection& selection) {
  if (selection.text && !selection.text->isEmpty() && isLineBreak(selection.text->back())) return result;
  QString typed = result;
  while (!typed.isEmpty() && isLineBreak(typed.back())) typed.chop(1);
  return typed;
}

}  // namespace

void TypingSelectionReplacer::replace(const Selection& selection, const QString& result, const JobRef& job, Done done) {
  const auto place = replacements_.insert(replacements_.end(), {selection, result, job, std::move(done), Job::start()});
  lookLater(place);
}

void TypingSelectionReplacer::lookLater(Place place) {
  services_.clock.after(kBetweenLooks, place->run, [this, place] { look(place); });
}

void TypingSelectionReplacer::look(Place place) {
  const KeyTarget owner = place->selection.owner;
  if (!place->job.isRunning()) return giveUp(place);
  if (++place->looks < kSettle) return lookLater(place);
  if (owner == KeyTarget::none || wouldRunLines(*place)) return copy(place);
  if (services_.targets.current() == owner) return type(place);
  if (place->looks == kMostLooks) return copy(place);
  lookLater(place);
}

/// A terminal takes each line as a command.
bool TypingSelectionReplacer::wouldRunLines(const Replacement& replacement) const {
  const QString typed = withoutReturnAtEnd(replacement.result, replacement.selection);
  return std::ranges::any_of(typed, isLineBreak) && services_.selectedText.runsLines(replacement.selection.owner);
}

void TypingSelectionReplacer::type(Place place) {
  const auto typed = [this, place](const std::expected<void, KeyEventError>& result) {
    if (!place->job.isRunning()) return giveUp(place);
    if (!result) return finish(place, std::unexpected(result.error()));
    services_.clock.after(kBeforeRestore, place->run, [this, place] {
      restore(place->selection);
      finish(place, Outcome::typed);
    });
  };
  services_.keys.send(withoutReturnAtEnd(place->result, place->selection), false, place->run.bind(typed),
                      place->job.stopToken());
}

void TypingSelectionReplacer::copy(Place place) {
  services_.pasteboard.writeText(place->result);
  finish(place, Outcome::copied);
}

void TypingSelectionReplacer::giveUp(Place place) {
  restore(place->selection);
  replacements_.erase(place);
}

void TypingSelectionReplacer::finish(Place place, std::expected<Outcome, KeyEventError> outcome) {
  const Replacement replacement = std::move(*place);
  replacements_.erase(place);
  if (replacement.job.isRunning()) replacement.done(std::move(outcome));
}
