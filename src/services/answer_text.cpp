#include "services/answer_text.h"

#include <QJsonDocument>
#include <QJsonObject>

#include "services/service_error.h"

using namespace Qt::StringLiterals;

namespace {

std::optional<QString> notEmpty(const QString& text) { return text.isEmpty() ? std::nullopt : std::optional(text); }

std::optional<QString> textInObject(const QJsonObject& object, std::span<const QLatin1StringView> members,
                                    QLatin1StringView dataMember) {
  for (const auto member : members)
    if (const auto text = notEmpty(object.value(member).toString())) return text;
  return notEmpty(object.value("data"_L1).toObject().value(dataMember).toString());
}

}  // namespace

std::optional<QString> textIn(const QByteArray& body, std::span<const QLatin1StringView> members,
                              QLatin1StringView dataMember) {
  const auto document = QJsonDocument::fromJson(body);
  if (document.isObject()) return textInObject(document.object(), members, dataMember);
  if (document.isArray()) return std::nullopt;
  return notEmpty(decoded(body).trimmed());
}
