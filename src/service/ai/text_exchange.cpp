#include "service/ai/text_exchange.h"

#include <QJsonDocument>
#include <QRegularExpression>

#include <algorithm>
#include <array>

#include "service/ai/prompts.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qsizetype kLongestText = 200'000;
constexpr qsizetype kLongestInstruction = 20'000;
constexpr auto kFence = "```"_L1;

constexpr std::array kQuotes = {
    std::pair{u'"', u'"'},           std::pair{u'\'', u'\''},         std::pair{u'\u201c', u'\u201d'},
    std::pair{u'\u201e', u'\u201c'}, std::pair{u'\u2018', u'\u2019'}, std::pair{u'\u00ab', u'\u00bb'},
};

QString withoutTags(const QString& answer) {
  static const QRegularExpression tags(u"^<(text-[\\w-]+)>(.*)</\\1>$"_s,
                                       QRegularExpression::DotMatchesEverythingOption);
  const auto match = tags.match(answer);
  return match.hasMatch() ? match.captured(2).trimmed() : answer;
}

QString withoutFence(const QString& answer) {
  const qsizetype firstLine = answer.indexOf(u'\n');
  const bool isOne = answer.startsWith(kFence) && answer.endsWith(kFence) && firstLine > 0 &&
                     firstLine < answer.size() - kFence.size() && answer.count(kFence) == 2;
  if (!isOne) return answer;
  // What is in it keeps its first line's indentation.
  QString inside = answer.sliced(firstLine + 1, answer.size() - firstLine - 1 - kFence.size());
  if (inside.endsWith(u'\n')) inside.chop(1);
  return inside;
}

QString withoutQuotes(const QString& answer) {
  if (answer.size() < 3) return answer;
  const QString inside = answer.sliced(1, answer.size() - 2);
  const bool isQuoted = std::ranges::any_of(kQuotes, [&](const auto& pair) {
    return answer.front() == pair.first && answer.back() == pair.second && !inside.contains(pair.first) &&
           !inside.contains(pair.second);
  });
  return isQuoted ? inside : answer;
}

bool isQuoteMark(QChar character) {
  return std::ranges::any_of(kQuotes, [&](const auto& pair) { return character == pair.first; });
}

}  // namespace

QString inPlaceOf(const QString& text, const QString& answer) {
  const QString core = text.trimmed();
  const qsizetype before = text.indexOf(core);
  QString bare = withoutTags(answer.trimmed());
  if (!core.startsWith(kFence)) bare = withoutFence(bare);
  if (core.isEmpty() || !isQuoteMark(core.front())) bare = withoutQuotes(bare);
  return text.first(before) + bare + text.sliced(before + core.size());
}

TextExchange::TextExchange(const AIServices& services, const Request& request)
    : AIExchange(services, {.metric = u"text"_s, .limit = 55s}, request) {}

std::expected<void, Response> TextExchange::read() {
  const QJsonDocument body = QJsonDocument::fromJson(body_);
  if (!body.isObject()) return std::unexpected(Response::text(400, "The body is no JSON object."));
  body_.clear();
  text_ = body["text"_L1].toString();
  prompts::Transform transform{body["action"_L1].toString(), body["instruction"_L1].toString().trimmed()};
  if (text_.trimmed().isEmpty()) return std::unexpected(Response::text(400, "There is no text."));
  if (text_.size() > kLongestText || transform.instruction.size() > kLongestInstruction)
    return std::unexpected(Response::text(413, "The text is too long."));
  if (transform.action.isEmpty() && transform.instruction.isEmpty()) transform.action = u"improve"_s;
  auto question = prompts::transform(transform, text_);
  if (!question) return std::unexpected(Response::text(400, "The action is none that there is."));
  question_ = std::move(*question);
  return {};
}

Answered<QJsonObject> TextExchange::work(Provider& provider, const AICall& call) {
  const auto answer = provider.ask(question_, call);
  if (!answer) return std::unexpected(answer.error());
  return QJsonObject{{u"text"_s, inPlaceOf(text_, *answer)}};
}
