#include "services/environments.h"

#include <QJsonDocument>
#include <QJsonObject>

#include "base/regular_file.h"
#include "services/base_url.h"

using namespace Qt::StringLiterals;

namespace {

/// A file that somebody has made far larger than two texts is not worth reading.
constexpr qint64 kLongestOverride = 64 * 1024;

QJsonObject readObject(const QString& path) {
  const auto file = openRegularFile(path);
  return file ? QJsonDocument::fromJson((*file)->read(kLongestOverride)).object() : QJsonObject();
}

/// Without spaces and tabs at both ends; a line break stays, and makes it no address.
QString trimmed(const QString& text) {
  const auto isBlank = [](QChar character) { return character == u' ' || character == u'\t'; };
  const auto begin = std::ranges::find_if_not(text, isBlank);
  const auto end = std::find_if_not(text.rbegin(), std::make_reverse_iterator(begin), isBlank).base();
  return QString(begin, end - begin);
}

}  // namespace

std::optional<Environments::Found> Environments::overrideIn(QLatin1StringView folder) const {
  const QJsonObject object = readObject(folders_.file(folder + "/config.json"_L1));
  const QJsonValue endpoint = object.value("endpoint"_L1);
  const QJsonValue token = object.value("token"_L1);
  if (!endpoint.isString() || !token.isString()) return std::nullopt;
  const QUrl url(trimmed(endpoint.toString()), QUrl::StrictMode);
  if (!isWebAddress(url)) return std::nullopt;
  return Found{url, token.toString().toUtf8(), true};
}

void Environments::find(QLatin1StringView folder, ServiceOperation operation, const JobRef& job, Answer<Found> answer) {
  if (const auto found = overrideIn(folder)) {
    job.later([answer = std::move(answer), found = *found] { answer(found); });
    return;
  }
  api_.locate(job, [answer = std::move(answer), operation](const auto& location) {
    if (!location) return answer(std::unexpected(location.error()));
    const auto endpoint = location->url(operation);
    if (!endpoint) return answer(std::unexpected(endpoint.error()));
    answer(Found{*endpoint, location->serviceToken});
  });
}
