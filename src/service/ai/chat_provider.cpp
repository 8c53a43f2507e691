#include "service/ai/chat_provider.h"

#include "service/accounts/secret.h"
#include "service/ai/json_text.h"
#include "service/ai/picture_kind.h"

using namespace Qt::StringLiterals;

namespace {

/// Several large pictures as text.
constexpr qsizetype kLongestDrawing = 96'000'000;
constexpr qsizetype kLargestPicture = 32'000'000;
/// More than one are not asked for, and each may have to be fetched.
constexpr std::size_t kMostPictures = 4;

QByteArray pictureJson(const Picture& picture) {
  return R"({"type":"image_url","image_url":{"url":"data:)" + picture.type + ";base64," + picture.bytes.toBase64() +
         R"("}})";
}

/// A text by itself, or the parts of a turn with pictures.
QByteArray content(const Turn& turn) {
  if (turn.pictures.empty()) return jsonText(turn.text);
  QByteArray parts = R"([{"type":"text","text":)" + jsonText(turn.text) + '}';
  for (const Picture& picture : turn.pictures) parts += ',' + pictureJson(picture);
  return parts + ']';
}

QByteArray message(const QByteArray& role, const QByteArray& content) {
  return R"({"role":")" + role + R"(","content":)" + content + '}';
}

QByteArray modelMember(const QString& model) {
  return model.isEmpty() ? QByteArray() : R"("model":)" + jsonText(model) + ',';
}

/// A text, or a list of parts of which some have one.
QString textOf(const QJsonValue& content) {
  QString text = content.toString();
  for (const QJsonValue& part : content.toArray()) text += part["text"_L1].toString();
  return text;
}

QByteArray field(const QByteArray& boundary, const QByteArray& name, const QString& value) {
  if (value.isEmpty()) return {};
  return "--" + boundary + "\r\nContent-Disposition: form-data; name=\"" + name + "\"\r\n\r\n" + value.toUtf8() +
         "\r\n";
}

QByteArray file(const QByteArray& boundary, const QByteArray& name, qsizetype number, const Picture& picture) {
  return "--" + boundary + "\r\nContent-Disposition: form-data; name=\"" + name + "\"; filename=\"picture-" +
         QByteArray::number(number) + '.' + pictureSuffix(picture.type) + "\"\r\nContent-Type: " + picture.type +
         "\r\n\r\n" + picture.bytes + "\r\n";
}

AIError noPicture() { return {.text = u"The AI provider sent no picture."_s}; }

}  // namespace

QList<QByteArray> ChatProvider::headers(const QByteArray& contentType) const {
  QList<QByteArray> headers{"Content-Type: " + contentType};
  if (!setup_.key.isEmpty()) headers.append("Authorization: Bearer " + setup_.key);
  return headers;
}

HttpCall ChatProvider::request(const Question& question, bool isStream) const {
  QByteArray body = '{' + modelMember(setup_.model) + R"("messages":[)";
  body += message("system", jsonText(question.instructions));
  for (const Turn& turn : question.turns)
    body += ',' + message(turn.speaker == Turn::Speaker::user ? "user" : "assistant", content(turn));
  body += isStream ? R"(],"stream":true})" : "]}";
  return {.url = url(u"/chat/completions"_s), .headers = headers("application/json"), .body = body};
}

HttpProvider::Fragment ChatProvider::readWhole(const QJsonObject& answer) const {
  const QJsonValue choice = answer.value("choices"_L1)[0];
  const QJsonValue said = choice["message"_L1];
  return {.text = textOf(said["content"_L1]),
          .isEnd = true,
          .isCut = choice["finish_reason"_L1] == "length"_L1,
          .error = said["refusal"_L1].toString()};
}

HttpProvider::Fragment ChatProvider::readEvent(const QJsonObject& event) const {
  const QJsonValue choice = event.value("choices"_L1)[0];
  const QString reason = choice["finish_reason"_L1].toString();
  return {.text = textOf(choice["delta"_L1]["content"_L1]),
          .isEnd = !reason.isEmpty(),
          .isCut = reason == "length"_L1,
          .error = {}};
}

HttpCall ChatProvider::drawingRequest(const Drawing& drawing) const {
  QByteArray body = '{' + modelMember(setup_.imageModel) + R"("prompt":)" + jsonText(drawing.prompt);
  if (!drawing.size.isEmpty()) body += R"(,"size":)" + jsonText(drawing.size);
  if (!drawing.quality.isEmpty()) body += R"(,"quality":)" + jsonText(drawing.quality);
  return {.url = url(u"/images/generations"_s), .headers = headers("application/json"), .body = body + '}'};
}

HttpCall ChatProvider::editRequest(const Drawing& drawing) const {
  const QByteArray boundary = "vantle-" + makeSecret();
  QByteArray body = field(boundary, "model", setup_.imageModel) + field(boundary, "prompt", drawing.prompt) +
                    field(boundary, "size", drawing.size) + field(boundary, "quality", drawing.quality);
  // One alone goes by the older name, which every service knows.
  const QByteArray name = drawing.references.size() == 1 ? "image" : "image[]";
  qsizetype number = 0;
  for (const Picture& picture : drawing.references) body += file(boundary, name, ++number, picture);
  body += "--" + boundary + "--\r\n";
  return {
      .url = url(u"/images/edits"_s), .headers = headers("multipart/form-data; boundary=" + boundary), .body = body};
}

Answered<QByteArray> ChatProvider::fetch(const QString& url, const AICall& call) {
  if (url.startsWith("data:"_L1)) return QByteArray::fromBase64(url.section(u',', 1).toLatin1());
  const QUrl place(url);
  if (place.scheme() != "https"_L1 && place.host() != setup_.base.host()) return QByteArray();
  // Another host gets no key.
  const auto answer = caller().send({.url = place, .headers = {}, .longest = kLargestPicture}, call);
  if (!answer) return std::unexpected(answer.error());
  return answer->isSuccess() ? answer->body : QByteArray();
}

Answered<Picture> ChatProvider::pictureIn(const QJsonObject& entry, const AICall& call) {
  Picture picture{QByteArray::fromBase64(entry.value("b64_json"_L1).toString().toLatin1()), {}};
  if (const QString url = entry.value("url"_L1).toString(); picture.bytes.isEmpty() && !url.isEmpty()) {
    auto bytes = fetch(url, call);
    if (!bytes) return std::unexpected(bytes.error());
    picture.bytes = std::move(*bytes);
  }
  picture.type = pictureType(picture.bytes);
  if (picture.type.isEmpty()) return std::unexpected(noPicture());
  return picture;
}

Answered<std::vector<Picture>> ChatProvider::draw(const Drawing& drawing, const AICall& call) {
  if (setup_.imageModel.isEmpty())
    return std::unexpected(AIError{AIError::Reason::setup, u"No image model is set. "_s + setup_.hint});
  HttpCall request = drawing.references.empty() ? drawingRequest(drawing) : editRequest(drawing);
  request.longest = kLongestDrawing;
  const auto answer = askForObject(request, call);
  if (!answer) return std::unexpected(answer.error());
  std::vector<Picture> pictures;
  for (const QJsonValue& entry : answer->value("data"_L1).toArray()) {
    auto picture = pictureIn(entry.toObject(), call);
    if (!picture) return std::unexpected(picture.error());
    pictures.push_back(std::move(*picture));
    if (pictures.size() == kMostPictures) break;
  }
  if (pictures.empty()) return std::unexpected(noPicture());
  return pictures;
}
