#pragma once

#include <list>

#include "tools/text_transform/displaced_clipboard.h"

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
    DisplacedClipboard& displaced;
    KeystrokeSender& keys;
    Clock& clock;
  };

  explicit TypingSelectionReplacer(const Services& services) : services_(services) {}

  /// When the job ends, typing stops, and the earlier clipboard comes back.
  void replace(const Selection& selection, const QString& result, const JobRef& job, Done done) override;
  void restore(const Selection& selection) override { services_.displaced.restore(selection); }

 private:
  struct Replacement {
    Selection selection;
    QString result;
    JobRef job;
    Done done;
    Job run;
    int looks = 0;
  };
  using Place = std::list<Replacement>::iterator;

  void lookLater(Place place);
  void look(Place place);
  bool wouldRunLines(const Replacement& replacement) const;
  void type(Place place);
  void copy(Place place);
  void giveUp(Place place);
  void finish(Place place, std::expected<Outcome, KeyEventError> outcome);

  Services services_;
  std::list<Replacement> replacements_;
};
