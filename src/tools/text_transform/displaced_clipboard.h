#pragma once

#include <memory>

#include "tools/text_transform/selection.h"

class Clock;

/// What the user's clipboard held while a copy of ours is in its place. There is one, for all who copy and put back: so
/// no copy is taken for the user's clipboard, and nothing is put back twice. Main thread only.
class DisplacedClipboard {
 public:
  struct Services {
    Pasteboard& pasteboard;
    Clock& clock;
  };
  /// What a copy would displace.
  struct Before {
    EarlierClipboard earlier;
    /// The change count without the copy.
    std::int64_t count = 0;
    /// An earlier copy of ours is in its place already.
    bool isDisplaced = false;
  };
  using Ready = std::function<void(Before)>;
  /// A copy that was asked for and has not come.
  struct Awaited {
    Before before;
    /// Who was asked.
    KeyTarget program = KeyTarget::none;
    /// Since then.
    std::unique_ptr<InputWatch> input;
  };

  explicit DisplacedClipboard(const Services& services) : services_(services) {}

  /// Keeps what the clipboard holds, or held before a copy of ours that is still on it and that nobody will put back
  /// from now on but the caller. Answers now or later.
  void prepare(const JobRef& job, Ready ready);
  /// The selection's copy is in the clipboard's place now.
  void displace(const Selection& selection);
  /// Puts the earlier clipboard back, unless somebody has put something else on it since.
  void restore(const Selection& selection);
  /// Should the copy come after all, within ten seconds, it is undone: if nothing but our asking can have made it.
  void undoLateCopy(Awaited awaited);

 private:
  struct Displaced {
    /// Nobody needs it any more when it is gone: a result has taken the clipboard.
    std::weak_ptr<const PasteboardContents> earlier;
    /// Of the copy.
    std::optional<QString> text;
    std::int64_t count = 0;
  };

  void keep(const JobRef& job, const Ready& ready);
  Before takeOver(const EarlierClipboard& earlier);
  bool isDisplaced(const EarlierClipboard& earlier) const { return earlier && displaced_.earlier.lock() == earlier; }
  void putBack(const EarlierClipboard& earlier);
  void lookLater();
  void look();

  Services services_;
  Displaced displaced_;
  Job restoring_;
  /// There while `looking_` runs.
  std::optional<Awaited> late_;
  std::chrono::steady_clock::time_point lateEnd_;
  Job looking_;
};
