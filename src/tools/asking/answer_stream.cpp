#include "tools/asking/answer_stream.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <array>

#include "services/answer_text.h"

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kMembers = {"answer"_L1, "text"_L1, "result"_L1, "response"_L1};
constexpr auto kDataMember = "answer"_L1;

QString member(const StreamEvent& event, QLatin1StringView name) {
  return QJsonDocument::fromJson(event.data).object().value(name).toString();
}

}  // namespace

AskOutcome wholeAnswer(const QByteArray& body) {
  if (const auto text = textIn(body, kMembers, kDataMember)) return *text;
  return std::unexpected(AskError::noAnswer(body));
}

bool AnswerStream::take(const QByteArray& piece) {
  const qsizetype before = text_.size();
  for (const StreamEvent& event : reader_.read(piece)) take(event);
  return text_.size() > before;
}

/// The first end counts.
void AnswerStream::take(const StreamEvent& event) {
  if (whole_ || error_) return;
  if (event.name == "delta")
    text_ += member(event, "text"_L1);
  else if (event.name == "done")
    whole_ = member(event, "answer"_L1);
  else if (event.name == "error")
    error_ = AskError::told(member(event, "error"_L1));
}

AskOutcome AnswerStream::outcome(const QByteArray& body) const {
  if (error_) return std::unexpected(*error_);
  if (whole_ && !whole_->isEmpty()) return *whole_;
  if (whole_ && !text_.isEmpty()) return text_;
  if (whole_) return std::unexpected(AskError::noAnswer(body));
  return std::unexpected(reader_.hasOverflown() ? AskError::tooLarge() : AskError::brokenOff());
}
