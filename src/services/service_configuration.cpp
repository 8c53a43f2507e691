#include "services/service_configuration.h"

#include "services/base_url.h"

using namespace Qt::StringLiterals;

namespace {

QString withScheme(const QString& host) { return host.isEmpty() ? QString() : u"https://"_s + host; }

/// An empty text is an empty URL; anything else must be usable.
std::expected<QUrl, ServiceError> baseUrl(const QString& text, QLatin1StringView name) {
  if (text.isEmpty()) return QUrl();
  const auto url = parseBaseUrl(text);
  if (url) return *url;
  return std::unexpected(ServiceError{ServiceError::Reason::configuration,
                                      u"The %1 URL cannot be used. %2"_s.arg(name, url.error().description())});
}

}  // namespace

void ServiceSettings::read(JsonReader& reader) {
  reader.read("api"_L1, api);
  reader.read("links"_L1, links);
  reader.read("token"_L1, token);
}

void ServiceSettings::write(QJsonObject& object) const {
  const auto set = [&object](QLatin1StringView key, const QString& value) {
    if (!value.isEmpty()) object.insert(key, value);
  };
  set("api"_L1, api);
  set("links"_L1, links);
  set("token"_L1, token);
}

PresetHosts PresetHosts::ofThisBuild() {
  return {QStringLiteral(VANTLE_API_HOST), QStringLiteral(VANTLE_LINK_HOST), QStringLiteral(VANTLE_SERVICE_TOKEN)};
}

ServiceMode ServiceConfiguration::mode() const {
  return value().api.isEmpty() && value().links.isEmpty() ? standardMode() : ServiceMode::ownHosts;
}

ServiceMode ServiceConfiguration::standardMode() const {
  return preset_.api.isEmpty() && preset_.links.isEmpty() ? ServiceMode::builtIn : ServiceMode::presetHosts;
}

std::expected<ServiceLocation, ServiceError> ServiceConfiguration::hosts() {
  reload();
  const ServiceSettings& own = value();
  const bool isOwn = mode() == ServiceMode::ownHosts;
  const auto api = baseUrl(isOwn ? own.api : withScheme(preset_.api), "API"_L1);
  if (!api) return std::unexpected(api.error());
  const auto links = baseUrl(isOwn ? own.links : withScheme(preset_.links), "links"_L1);
  if (!links) return std::unexpected(links.error());
  // The token this binary was built with belongs to its own hosts and to nobody else's.
  const QString token = isOwn || !own.token.isEmpty() ? own.token : preset_.token;
  return ServiceLocation{*api, *links, token.toUtf8()};
}
