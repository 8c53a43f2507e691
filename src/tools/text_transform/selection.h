#pragma once

#include <QString>

#include <memory>
#include <optional>

#include "platform/key_events.h"
#include "platform/key_target.h"
#include "platform/pasteboard.h"

/// All that the clipboard held before a copy took its place; what each copy has displaced is another object.
using EarlierClipboard = std::shared_ptr<const PasteboardContents>;

/// What the user has selected in whatever application is in front, and what has to be put right afterwards.
struct Selection {
  /// As it was copied; absent when nothing was copied in time, or nothing that has a text.
  std::optional<QString> text;
  /// Null when the clipboard was not touched.
  EarlierClipboard previousClipboard;
  /// Where it was selected.
  KeyTarget owner = KeyTarget::none;
  /// The pasteboard's change count with the copy on it.
  std::int64_t copyCount = 0;
  /// Why it could not even be copied; a sentence without its full stop.
  QString obstacle = {};
};

/// Reads the selection. Main thread only.
class SelectionReader {
 public:
  using Answer = std::function<void(Selection)>;

  virtual ~SelectionReader() = default;

  /// Answers once, within about half a second. Never fails: without a selection there is no text.
  virtual void readSelectedText(const JobRef& job, Answer answer) = 0;
};

/// Puts a result in the place of a selection, and the earlier clipboard back. Main thread only.
class SelectionReplacer {
 public:
  enum class Outcome {
    typed,
    /// The result is on the clipboard instead: the window that owned the selection is not in front any more, or is a
    /// terminal, which would run each of several lines.
    copied,
  };
  using Done = std::function<void(std::expected<Outcome, KeyEventError>)>;

  virtual ~SelectionReplacer() = default;

  /// Types `result` over `selection`, without a Return at its end, and puts the earlier clipboard back.
  virtual void replace(const Selection& selection, const QString& result, const JobRef& job, Done done) = 0;
  /// Puts the earlier clipboard back, if copying has displaced it and nobody has copied anything else since.
  virtual void restore(const Selection& selection) = 0;
};
