#include "service/ai/message_provider.h"

#include "service/ai/json_text.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kVersion = "2023-06-01";
constexpr auto kLimitReached = "max_tokens"_L1;

QByteArray pictureJson(const Picture& picture) {
  return R"({"type":"image","source":{"type":"base64","media_type":")" + picture.type + R"(","data":")" +
         picture.bytes.toBase64() + R"("}},)";
}

QByteArray message(const Turn& turn) {
  const QByteArray role = turn.speaker == Turn::Speaker::user ? "user" : "assistant";
  QByteArray parts;
  for (const Picture& picture : turn.pictures) parts += pictureJson(picture);
  parts += R"({"type":"text","text":)" + jsonText(turn.text) + '}';
  return R"({"role":")" + role + R"(","content":[)" + parts + "]}";
}

}  // namespace

HttpCall MessageProvider::request(const Question& question, bool isStream) const {
  QByteArray messages;
  for (const Turn& turn : question.turns) messages += (messages.isEmpty() ? "" : ",") + message(turn);
  const QByteArray body = R"({"model":)" + jsonText(model_) + R"(,"max_tokens":)" + QByteArray::number(question.room) +
                          R"(,"system":)" + jsonText(question.instructions) + (isStream ? R"(,"stream":true)" : "") +
                          R"(,"messages":[)" + messages + "]}";
  QList<QByteArray> headers{"Content-Type: application/json", QByteArray("anthropic-version: ") + kVersion};
  if (!key_.isEmpty()) headers.append("x-api-key: " + key_);
  return {.url = url(u"/v1/messages"_s), .headers = headers, .body = body};
}

HttpProvider::Fragment MessageProvider::readWhole(const QJsonObject& answer) const {
  Fragment all{.text = {}, .isEnd = true, .isCut = answer.value("stop_reason"_L1) == kLimitReached, .error = {}};
  for (const QJsonValue& block : answer.value("content"_L1).toArray())
    if (block["type"_L1] == "text"_L1) all.text += block["text"_L1].toString();
  return all;
}

HttpProvider::Fragment MessageProvider::readEvent(const QJsonObject& event) const {
  const QString type = event.value("type"_L1).toString();
  const QJsonValue delta = event.value("delta"_L1);
  if (type == "content_block_delta"_L1) return {.text = delta["text"_L1].toString(), .error = {}};
  return {.text = {},
          .isEnd = type == "message_stop"_L1,
          .isCut = type == "message_delta"_L1 && delta["stop_reason"_L1] == kLimitReached,
          .error = {}};
}
