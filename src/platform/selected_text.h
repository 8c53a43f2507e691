#pragma once

#include <QString>

#include <functional>
#include <optional>
#include <utility>

#include "base/job.h"
#include "platform/key_target.h"

/// What is selected in another application, where the system hands it over without a copy. As it stands, of a system
/// where everything has to be copied. Main thread only.
class SelectedText {
 public:
  using Answer = std::function<void(std::optional<QString>)>;

  virtual ~SelectedText() = default;

  /// Whether the copy shortcut does nothing but copy there: what runs in a terminal would be interrupted by it. Where
  /// it is not, `read` is the only way.
  virtual bool isCopiedByShortcut([[maybe_unused]] KeyTarget target) const { return true; }
  /// Whether each line that is typed there would be run as a command.
  virtual bool runsLines(KeyTarget target) const { return !isCopiedByShortcut(target); }
  /// Answers, later, with the text that is selected there; nothing where there is none, or where only a copy can tell.
  virtual void read([[maybe_unused]] KeyTarget target, const JobRef& job, Answer answer) {
    job.later([answer = std::move(answer)] { answer(std::nullopt); });
  }
};
