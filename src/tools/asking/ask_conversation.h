#pragma once

#include "base/clock.h"
#include "platform/pasteboard.h"
#include "tools/asking/answer_client.h"
#include "tools/asking/ask_model.h"

/// The flow of questions and answers that panels share: one question at a time, and copies of its answers. Main thread
/// only.
class AskConversation {
 public:
  struct Services {
    Pasteboard& pasteboard;
    Clock& clock;
  };
  using Ask = std::function<void(const AskQuestion&, const AskCall&)>;

  /// `ask` is given what the model holds at the time.
  AskConversation(AskModel& model, const Services& services, Ask ask);

  /// Whether there is something to ask, and nothing being asked already.
  bool canSubmit() const;
  void submit();
  /// Breaks the running question off, if there is one; it goes back into the field.
  void cancel();
  /// Breaks it off and forgets everything.
  void startOver();

  void copy(const QString& text);
  /// False without an answer.
  bool copyLatestAnswer();

 private:
  AskModel& model_;
  Services services_;
  Ask ask_;
  Job asking_;
  Job copied_;
};
