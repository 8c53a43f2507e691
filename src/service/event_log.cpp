#include "service/event_log.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <array>

#include "base/folder.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestValue = 200;

struct Key {
  QLatin1StringView name;
  bool isRequired;
};

constexpr std::array kKeys = {
    Key{"event"_L1, true},     Key{"installId"_L1, true}, Key{"appVersion"_L1, true},
    Key{"osVersion"_L1, true}, Key{"tool"_L1, false},
};

bool isValid(const QJsonObject& event) {
  qsizetype known = 0;
  for (const Key& key : kKeys) {
    const QJsonValue value = event.value(key.name);
    if (value.isUndefined() && !key.isRequired) continue;
    if (!value.isString() || value.toString().isEmpty() || value.toString().size() > kLongestValue) return false;
    ++known;
  }
  return known == event.size();
}

}  // namespace

bool EventLog::append(const QJsonObject& event) {
  const QByteArray line = QJsonDocument(event).toJson(QJsonDocument::Compact) + '\n';
  const std::lock_guard lock(mutex_);
  if (!makePrivateFolder(QFileInfo(path_).path())) return false;
  QFile file(path_);
  if (!file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered)) return false;
  file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
  return file.write(line) == line.size();
}

Response EventsEndpoint::answer(const Request& request) {
  const auto document = QJsonDocument::fromJson(request.body);
  if (!document.isObject() || !isValid(document.object())) return Response::text(400, "This is no usage event.");
  QJsonObject event = document.object();
  event.insert("receivedAt"_L1, QDateTime::currentDateTimeUtc().toString(Qt::ISODate));
  if (!log_.append(event)) return Response::text(500, "The event could not be stored.");
  return {204, {}, {}};
}
