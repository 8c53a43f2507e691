#include "service/ai/picture_exchanges.h"

#include <QJsonArray>

#include <algorithm>
#include <cctype>

#include "service/ai/prompts.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const PictureForm::Rules kPromptRules{.files = {"file"}, .mostFiles = 1, .fields = {"mode"}};
const PictureForm::Rules kDrawRules{
    .files = {"files"}, .mostFiles = 4, .fields = {"prompt", "size", "quality", "edit"}};
constexpr qsizetype kLongestPrompt = 32'000;
constexpr qsizetype kLongestWord = 32;

/// "1024x1536", "high": nothing that could be more than a word.
bool isWord(const QString& text) {
  return text.size() <= kLongestWord && std::ranges::all_of(text, [](QChar c) {
           return c.unicode() < 128 && (std::isalnum(c.unicode()) != 0 || c == u'-' || c == u'_' || c == u':');
         });
}

/// What is left to the provider is not said to it: not all know the word.
QString choice(const QString& sent) { return sent.trimmed() == "auto"_L1 ? QString() : sent.trimmed(); }

}  // namespace

PromptExchange::PromptExchange(const AIServices& services, const Request& request, const QByteArray& boundary)
    : AIExchange(services, {.metric = {}, .limit = 55s}, request), form_(kPromptRules, boundary, services.room) {}

std::expected<void, Response> PromptExchange::read() {
  if (auto finished = form_.finish(); !finished) return finished;
  if (form_.pictures().empty()) return std::unexpected(Response::text(400, "There is no picture."));
  auto question = prompts::describe(form_.field("mode"), form_.pictures().front());
  if (!question) return std::unexpected(Response::text(400, "The mode is none that there is."));
  question_ = std::move(*question);
  return {};
}

Answered<QJsonObject> PromptExchange::work(Provider& provider, const AICall& call) {
  const auto prompt = provider.ask(question_, call);
  if (!prompt) return std::unexpected(prompt.error());
  return QJsonObject{{u"prompt"_s, prompt->trimmed()}};
}

DrawExchange::DrawExchange(const AIServices& services, const Request& request, const QByteArray& boundary)
    : AIExchange(services, {.metric = u"image_generate"_s, .limit = 170s}, request),
      form_(kDrawRules, boundary, services.room) {}

std::expected<void, Response> DrawExchange::read() {
  if (auto finished = form_.finish(); !finished) return finished;
  drawing_ = {.prompt = form_.field("prompt").trimmed(),
              .size = choice(form_.field("size")),
              .quality = choice(form_.field("quality")),
              .references = form_.pictures(),
              .isEdit = form_.field("edit") == "true"_L1};
  if (drawing_.prompt.isEmpty()) return std::unexpected(Response::text(400, "There is no prompt."));
  if (drawing_.prompt.size() > kLongestPrompt) return std::unexpected(Response::text(413, "The prompt is too long."));
  if (!isWord(drawing_.size) || !isWord(drawing_.quality))
    return std::unexpected(Response::text(400, "The size or the quality is none."));
  if (drawing_.isEdit && drawing_.references.empty())
    return std::unexpected(Response::text(400, "There is no picture to edit."));
  drawing_.prompt = prompts::drawing(drawing_);
  return {};
}

Answered<QJsonObject> DrawExchange::work(Provider& provider, const AICall& call) {
  const auto pictures = provider.draw(drawing_, call);
  if (!pictures) return std::unexpected(pictures.error());
  QJsonArray images;
  for (const Picture& picture : *pictures)
    images.append(QJsonObject{{u"data"_s, QString::fromLatin1(picture.bytes.toBase64())},
                              {u"mimeType"_s, QString::fromLatin1(picture.type)}});
  return QJsonObject{{u"images"_s, images}};
}
