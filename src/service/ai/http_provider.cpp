#include "service/ai/http_provider.h"

#include <QJsonDocument>

#include "base/event_stream.h"
#include "service/ai/thoughts.h"
#include "service/log.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestAnswer = 1'000'000;
constexpr qsizetype kLongestEvent = 4'000'000;
constexpr qsizetype kLongestMessage = 300;
constexpr auto kCutMark = "\n\n[The answer ends here: the provider's limit was reached.]"_L1;

/// The words of an error, wherever the provider put them.
QString messageIn(const QJsonObject& body) {
  const QJsonValue error = body.value("error"_L1);
  for (const QJsonValue& place :
       {error.toObject().value("message"_L1), error, body.value("message"_L1), body.value("detail"_L1)})
    if (const QString text = place.toString().simplified(); !text.isEmpty()) return text;
  return error.isObject() ? u"an error without words"_s : QString();
}

}  // namespace

/// Puts an answer together from its events.
class HttpProvider::Reading {
 public:
  Reading(const HttpProvider& provider, const AICall& context) : provider_(provider), context_(context) {}

  bool feed(QByteArrayView bytes) {
    for (const StreamEvent& event : reader_.read(bytes)) take(event.data);
    return !isTooLong() && all_.error.isEmpty();
  }
  bool isTooLong() const { return reader_.hasOverflown() || all_.text.size() > kLongestAnswer; }
  /// Nothing follows.
  Fragment& finish() {
    say(thoughts_.finish());
    return all_;
  }
  /// All of it came at once.
  void takeWhole(Fragment whole) {
    const QString text = std::exchange(whole.text, {});
    all_ = std::move(whole);
    say(thoughts_.pass(text));
  }

 private:
  void take(const QByteArray& data) {
    if (data.trimmed() == "[DONE]") {
      all_.isEnd = true;
      return;
    }
    const QJsonObject event = QJsonDocument::fromJson(data).object();
    const Fragment piece = provider_.readEvent(event);
    all_.isEnd |= piece.isEnd;
    all_.isCut |= piece.isCut;
    if (all_.error.isEmpty()) all_.error = piece.error.isEmpty() ? messageIn(event) : piece.error;
    say(thoughts_.pass(piece.text));
  }

  void say(const QString& text) {
    all_.text += text;
    // Blanks alone are no answer yet, and it may stay so.
    const bool isBlank = said_ == 0 && all_.text.trimmed().isEmpty();
    if (!context_.onPiece || isTooLong() || isBlank || said_ == all_.text.size()) return;
    context_.onPiece(all_.text.sliced(said_));
    said_ = all_.text.size();
  }

  const HttpProvider& provider_;
  const AICall& context_;
  Fragment all_;
  Thoughts thoughts_;
  /// How much of the text has gone on.
  qsizetype said_ = 0;
  EventStreamReader reader_{kLongestEvent};
};

QUrl HttpProvider::url(const QString& path) const {
  QUrl url = base_;
  QString before = base_.path();
  while (before.endsWith(u'/')) before.chop(1);
  url.setPath(before + path);
  return url;
}

AIError HttpProvider::noAnswer() { return {.text = u"The AI provider gave an empty answer."_s}; }

AIError HttpProvider::refusal(const QString& words, int status) const {
  QString text = words;
  if (!secret_.isEmpty()) text.replace(QString::fromUtf8(secret_), u"…"_s);
  if (text.size() > kLongestMessage) text = text.first(kLongestMessage) + u'…';
  const QString tail = status == 200 ? QString() : u" (HTTP %1)"_s.arg(status);
  return {.text = u"AI provider%1: %2"_s.arg(tail, text.isEmpty() ? u"it does not say why"_s : text)};
}

AIError HttpProvider::refusal(int status, const QByteArray& body) const {
  logLine("ai: the provider answered with HTTP %d", status);
  const bool isRedirect = status >= 300 && status < 400;
  if (isRedirect) return refusal(u"it sends elsewhere; is the base URL right?"_s, status);
  const QString words = messageIn(QJsonDocument::fromJson(body).object());
  const bool isMissing = status == 404 && words.isEmpty();
  return refusal(isMissing ? u"there is nothing; is the base URL right?"_s : words, status);
}

Answered<QJsonObject> HttpProvider::objectIn(const HttpAnswer& answer) const {
  if (!answer.isSuccess()) return std::unexpected(refusal(answer.status, answer.body));
  const QJsonDocument document = QJsonDocument::fromJson(answer.body);
  if (!document.isObject())
    return std::unexpected(AIError{.text = u"The AI provider's answer is not understood; is the base URL right?"_s});
  if (const QString words = messageIn(document.object()); !words.isEmpty() && document["error"_L1].isObject())
    return std::unexpected(refusal(words, answer.status));
  return document.object();
}

Answered<QJsonObject> HttpProvider::askForObject(const HttpCall& call, const AICall& context) {
  const auto answer = caller_.send(call, context);
  if (!answer) return std::unexpected(answer.error());
  return objectIn(*answer);
}

Answered<QString> HttpProvider::ask(const Question& question, const AICall& call) {
  Reading reading(*this, call);
  HttpCall request = this->request(question, static_cast<bool>(call.onPiece));
  if (call.onPiece) request.onEvents = [&](QByteArrayView bytes) { return reading.feed(bytes); };
  const auto answer = caller_.send(request, call);
  if (!answer) return std::unexpected(answer.error());
  if (!answer->isStream) {
    const auto object = objectIn(*answer);
    if (!object) return std::unexpected(object.error());
    reading.takeWhole(readWhole(*object));
  }
  const Fragment& all = reading.finish();
  if (!all.error.isEmpty()) return std::unexpected(refusal(all.error, 200));
  if (answer->isBroken || reading.isTooLong())
    return std::unexpected(AIError{.text = u"The AI provider's answer is too long."_s});
  if (all.text.trimmed().isEmpty()) return std::unexpected(noAnswer());
  if (answer->isStream && !all.isEnd)
    return std::unexpected(AIError{.text = u"The AI provider's answer was cut off."_s});
  if (all.isCut && !question.mayBeCut)
    return std::unexpected(AIError{.text = u"The text is too long: the AI provider's limit was reached."_s});
  return all.isCut ? all.text + kCutMark : all.text;
}
