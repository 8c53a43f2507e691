#pragma once

#include <deque>
#include <memory>

#include "tools/text_transform/displaced_clipboard.h"

class Clock;
class KeystrokeSender;
class SelectedText;

/// Takes what the system hands over, else copies the selection as the user would and looks for what that puts on the
/// pasteboard. Readings wait for one another: the later one would take the earlier one's copy for the user's clipboard.
class CopyingSelectionReader final : public SelectionReader {
 public:
  struct Services {
    KeyTargets& targets;
    SelectedText& selectedText;
    Pasteboard& pasteboard;
    DisplacedClipboard& displaced;
    KeystrokeSender& keys;
    Clock& clock;
  };

  explicit CopyingSelectionReader(const Services& services) : services_(services) {}
  /// A copy of a reading that is under way is undone.
  ~CopyingSelectionReader() override;
  CopyingSelectionReader(const CopyingSelectionReader&) = delete;
  CopyingSelectionReader& operator=(const CopyingSelectionReader&) = delete;

  /// When the job ends in the middle of it, a copy that comes after all is undone.
  void readSelectedText(const JobRef& job, Answer answer) override;

 private:
  struct Reading {
    JobRef job;
    Answer answer;
    Selection selection;
    DisplacedClipboard::Before before;
    /// Since the copy was asked for.
    std::unique_ptr<InputWatch> input;
    int looks = 0;
  };

  void startNext();
  void takeHandedOver(std::optional<QString> text);
  void copy(const DisplacedClipboard::Before& before);
  void waitForCopy(const std::expected<void, KeyEventError>& pressed);
  void lookAgain();
  void look();
  void takeCopy();
  void missCopy();
  void finish();

  Services services_;
  /// The first is under way; `run_` keeps it going whatever becomes of its own job.
  std::deque<Reading> readings_;
  Job run_;
};
