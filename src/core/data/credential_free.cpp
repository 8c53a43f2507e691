#include "core/data/credential_free.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <array>

#include "base/json_file.h"
#include "platform/permissions.h"

using namespace Qt::StringLiterals;

namespace {

/// The settings in which a service's address may have a token beside it.
constexpr std::array kFiles = {"services.json"_L1, "config.json"_L1};
/// Names of members that hold a credential end so, whatever comes before.
constexpr std::array kMembers = {"token"_L1, "key"_L1, "secret"_L1, "password"_L1, "credential"_L1};

bool holdsCredential(const QString& member) {
  return std::ranges::any_of(kMembers, [&](auto end) { return member.endsWith(end, Qt::CaseInsensitive); });
}

QJsonValue emptied(const QJsonValue& value);

QJsonObject emptied(QJsonObject object) {
  for (auto it = object.begin(); it != object.end(); ++it)
    it.value() = holdsCredential(it.key()) && !it.value().isObject() ? QJsonValue(QString()) : emptied(it.value());
  return object;
}

QJsonArray emptied(QJsonArray array) {
  for (auto it = array.begin(); it != array.end(); ++it) *it = emptied(QJsonValue(*it));
  return array;
}

QJsonValue emptied(const QJsonValue& value) {
  if (value.isObject()) return emptied(value.toObject());
  if (value.isArray()) return emptied(value.toArray());
  return value;
}

}  // namespace

Credentials credentialsIn(const QString& fileName) {
  if (fileName.startsWith(kTypingPermissionFile)) return Credentials::unknown;
  for (const auto name : kFiles) {
    if (fileName.compare(name, Qt::CaseInsensitive) == 0) return Credentials::known;
    // "services.json.corrupt", or what a save that was killed has left.
    if (fileName.startsWith(name, Qt::CaseInsensitive)) return Credentials::unknown;
  }
  return Credentials::none;
}

std::optional<QJsonDocument> readWithoutCredentials(const QString& path) {
  JsonFile file(path);
  const auto document = file.read();
  if (!document) return std::nullopt;
  return document->isArray() ? QJsonDocument(emptied(document->array())) : QJsonDocument(emptied(document->object()));
}
