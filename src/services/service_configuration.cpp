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

bool decode(const QJsonValue& value, std::optional<bool>& out) {
  if (value.isBool()) out = value.toBool();
  return value.isBool();
}

void ServiceSettings::read(JsonReader& reader) {
  reader.read("api"_L1, api);
  reader.read("links"_L1, links);
  reader.read("token"_L1, token);
  reader.read("useOwnHosts"_L1, useOwnHosts);
}

void ServiceSettings::write(QJsonObject& object) const {
  const auto set = [&object](QLatin1StringView key, const QString& value) {
    if (!value.isEmpty()) object.insert(key, value);
  };
  set("api"_L1, api);
  set("links"_L1, links);
  set("token"_L1, token);
  if (useOwnHosts) object.insert("useOwnHosts"_L1, *useOwnHosts);
}

PresetHosts PresetHosts::ofThisBuild() {
  return {QStringLiteral(VANTLE_API_HOST), QStringLiteral(VANTLE_LINK_HOST), QStringLiteral(VANTLE_SERVICE_TOKEN)};
}

ServiceMode ServiceConfiguration::mode() const {
  const bool areThere = !value().api.isEmpty() || !value().links.isEmpty();
  return areThere && value().useOwnHosts.value_or(true) ? ServiceMode::ownHosts : standardMode();
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
  // A token alone takes the place of the one this binary was built with; beside own hosts it goes to these only.
  const bool isForThese = isOwn || (!own.token.isEmpty() && own.useOwnHosts.value_or(true));
  const QString token = isForThese ? own.token : preset_.token;
  return ServiceLocation{*api, *links, token.toUtf8()};
}
