#include "service/ai/ask_exchanges.h"

#include <QJsonArray>
#include <QJsonDocument>

#include "service/ai/prompts.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qsizetype kLongestQuestion = 20'000;
/// What is older is not sent on.
constexpr qsizetype kLongestHistory = 50;
const PictureForm::Rules kRules{.files = {"file", "files"}, .mostFiles = 6, .fields = {"question", "history"}};

std::expected<void, Response> checkQuestion(const QString& question) {
  if (question.trimmed().isEmpty()) return std::unexpected(Response::text(400, "There is no question."));
  if (question.size() > kLongestQuestion) return std::unexpected(Response::text(413, "The question is too long."));
  return {};
}

/// Question and answer by turns, of the latest exchanges.
std::expected<std::vector<Turn>, Response> historyIn(const QJsonValue& value) {
  if (!value.isArray() && !value.isUndefined() && !value.isNull())
    return std::unexpected(Response::text(400, "The history is no list."));
  std::vector<Turn> turns;
  const QJsonArray exchanges = value.toArray();
  for (qsizetype i = std::max<qsizetype>(exchanges.size() - kLongestHistory, 0); i < exchanges.size(); ++i) {
    const QJsonValue question = exchanges[i]["question"_L1];
    const QJsonValue answer = exchanges[i]["answer"_L1];
    if (!question.isString() || !answer.isString())
      return std::unexpected(Response::text(400, "The history has something that is no exchange."));
    turns.push_back({.text = question.toString()});
    turns.push_back({.speaker = Turn::Speaker::assistant, .text = answer.toString()});
  }
  return turns;
}

Answered<QJsonObject> ask(Provider& provider, const Question& question, const AICall& call) {
  const auto answer = provider.ask(question, call);
  if (!answer) return std::unexpected(answer.error());
  return QJsonObject{{u"answer"_s, *answer}};
}

}  // namespace

AnswerExchange::AnswerExchange(const AIServices& services, const Request& request)
    : AIExchange(services, {.metric = u"answers"_s, .limit = 55s, .mayStream = true}, request) {}

std::expected<void, Response> AnswerExchange::read() {
  const QJsonDocument body = QJsonDocument::fromJson(body_);
  if (!body.isObject()) return std::unexpected(Response::text(400, "The body is no JSON object."));
  const QString question = body["question"_L1].toString();
  if (auto checked = checkQuestion(question); !checked) return checked;
  auto history = historyIn(body["history"_L1]);
  if (!history) return std::unexpected(std::move(history.error()));
  question_ = prompts::answer(question, std::move(*history), {});
  body_.clear();
  return {};
}

Answered<QJsonObject> AnswerExchange::work(Provider& provider, const AICall& call) {
  return ask(provider, question_, call);
}

ImageAnswerExchange::ImageAnswerExchange(const AIServices& services, const Request& request, const QByteArray& boundary)
    : AIExchange(services, {.metric = u"image_answers"_s, .limit = 85s, .mayStream = true}, request),
      form_(kRules, boundary, services.room) {}

std::expected<void, Response> ImageAnswerExchange::read() {
  if (auto finished = form_.finish(); !finished) return finished;
  if (form_.pictures().empty()) return std::unexpected(Response::text(400, "There is no picture."));
  const QString question = form_.field("question");
  if (auto checked = checkQuestion(question); !checked) return checked;
  QJsonValue past(QJsonValue::Undefined);
  if (const QString text = form_.field("history"); !text.trimmed().isEmpty()) {
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
    past = document.isArray() ? QJsonValue(document.array()) : QJsonValue(false);
  }
  auto history = historyIn(past);
  if (!history) return std::unexpected(std::move(history.error()));
  question_ = prompts::answer(question, std::move(*history), form_.pictures());
  return {};
}

Answered<QJsonObject> ImageAnswerExchange::work(Provider& provider, const AICall& call) {
  return ask(provider, question_, call);
}
