#pragma once

#include <list>

#include "tools/text_transform/selection.h"

class Clock;
class KeystrokeSender;
class SelectedText;

/// Types the result where the selection was.
class TypingSelectionReplacer final : public SelectionReplacer {
 public:
  struct Services {
    KeyTargets& targets;
    SelectedText& selectedText;
    Pasteboard& pasteboard;
    KeystrokeSender& keys;
    Clock& clock;
  };

  explicit TypingSelectionReplacer(const Services& services) : services_(services) {}

  /// When the job ends before anything is typed, nothing is; the earlier clipboard comes back all the same.
  void replace(const Selection& selection, const QString& result, const JobRef& job, Done done) override;
  void restore(const Selection& selection) override;

 private:
  struct Replacement {
    Selection selection;
    QString result;
    JobRef job;
    Done done;
    Job run;
    int tries = 0;
  };
  using Place = std::list<Replacement>::iterator;

  void tryToType(Place place);
  bool wouldRunLines(const Replacement& replacement) const;
  void type(Place place);
  void copy(Place place);
  void giveUp(Place place);
  void finish(Place place, std::expected<Outcome, KeyEventError> outcome);

  Services services_;
  std::list<Replacement> replacements_;
  Job restoring_;
};
