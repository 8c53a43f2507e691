#pragma once

#include <expected>
#include <optional>

#include "base/event_stream.h"
#include "tools/asking/ask_error.h"

using AskOutcome = std::expected<QString, AskError>;

/// The answer in an HTTP answer that came whole, of any media type but that of streams.
AskOutcome wholeAnswer(const QByteArray& body);

/// An answer that comes piece by piece, as a stream of the events "delta" ({"text"}), and at its end "done"
/// ({"answer"}, the whole of it) or "error" ({"error"}). Others are skipped.
class AnswerStream {
 public:
  static constexpr QByteArrayView kMediaType = "text/event-stream";

  /// Whether there is more text than before.
  bool take(const QByteArray& piece);
  const QString& text() const { return text_; }
  /// What it has come to, when the stream, all of which is `body`, has ended.
  AskOutcome outcome(const QByteArray& body) const;

 private:
  void take(const StreamEvent& event);

  /// More than any answer is let through.
  EventStreamReader reader_{4 * 1024 * 1024};
  QString text_;
  std::optional<QString> whole_;
  std::optional<AskError> error_;
};
