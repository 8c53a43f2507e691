#include "tools/asking/ask_conversation.h"

using namespace std::chrono_literals;

namespace {

constexpr auto kCopiedFor = 1500ms;

}  // namespace

AskConversation::AskConversation(AskModel& model, const Services& services, Ask ask)
    : model_(model), services_(services), ask_(std::move(ask)) {}

bool AskConversation::canSubmit() const { return !model_.pending() && !model_.question().trimmed().isEmpty(); }

void AskConversation::submit() {
  if (!canSubmit()) return;
  const AskQuestion question{model_.question().trimmed(), model_.exchanges()};
  asking_ = Job::start();
  const auto finish = [this](const AskOutcome& outcome) {
    if (outcome)
      model_.finish(*outcome);
    else
      model_.fail(outcome.error().description());
  };
  const AskCall call{asking_, asking_.bind([this](const QString& soFar) { model_.grow(soFar); }), asking_.bind(finish)};
  ask_(question, call);
  model_.begin();
}

void AskConversation::cancel() {
  asking_.cancel();
  if (model_.pending()) model_.abandon();
}

void AskConversation::startOver() {
  asking_.cancel();
  model_.reset();
}

void AskConversation::copy(const QString& text) {
  services_.pasteboard.writeText(text);
  model_.setCopied(true);
  copied_ = Job::start();
  services_.clock.after(kCopiedFor, copied_, [this] { model_.setCopied(false); });
}

bool AskConversation::copyLatestAnswer() {
  const auto answer = model_.latestAnswer();
  if (answer) copy(*answer);
  return answer.has_value();
}
