#include "tools/ask_ai/quick_question_client.h"

#include <QJsonDocument>
#include <QJsonObject>

#include "tools/asking/image_question.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kTimeLimit = 60s;

QByteArray bodyOf(const AskQuestion& question) {
  QJsonObject body{{u"question"_s, question.text}};
  if (!question.history.empty()) body.insert(u"history"_s, AskExchange::history(question.history));
  return QJsonDocument(body).toJson(QJsonDocument::Compact);
}

HttpRequest plainQuestion(const AskPlace& place, const AskQuestion& question) {
  HttpRequest request{.method = "POST",
                      .url = place.endpoint,
                      .headers = {{"Content-Type", "application/json"}},
                      .body = bodyOf(question),
                      .timeout = kTimeLimit};
  addAuthorization(request, place);
  return request;
}

std::vector<ClipboardImage> named(const std::vector<QByteArray>& images) {
  std::vector<ClipboardImage> attachments;
  for (const QByteArray& png : images)
    attachments.push_back({png, u"attachment-%1.png"_s.arg(attachments.size() + 1), u"image/png"_s});
  return attachments;
}

}  // namespace

void QuickQuestionClient::ask(const AskQuestion& question, const std::vector<QByteArray>& images, const AskCall& call) {
  if (images.empty())
    return answers_.ask<QuickQuestionEnvironment>(
        u"answers"_s, [question](const AskPlace& place) { return plainQuestion(place, question); }, call);
  answers_.ask<ImageAskEnvironment>(
      kImageAnswersMetric,
      [question, images](const AskPlace& place) { return imageQuestion(place, question, named(images)); }, call);
}
