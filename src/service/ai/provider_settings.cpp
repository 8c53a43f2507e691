#include "service/ai/provider_settings.h"

#include <QUrl>

#include <algorithm>
#include <array>

#include "service/ai/loopback.h"

using namespace Qt::StringLiterals;

namespace {

using Kind = ProviderSettings::Kind;

constexpr std::array kKinds = {
    std::pair{"none"_L1, Kind::none},          std::pair{"openai"_L1, Kind::chat},
    std::pair{"anthropic"_L1, Kind::messages}, std::pair{"openai-compatible"_L1, Kind::chat},
    std::pair{"command"_L1, Kind::command},
};

std::expected<void, QString> checkUrl(const ProviderSettings& settings) {
  const QUrl url(settings.baseUrl, QUrl::StrictMode);
  const bool isWeb = url.scheme() == "https"_L1 || url.scheme() == "http"_L1;
  if (!url.isValid() || !isWeb || url.host().isEmpty() || url.hasQuery() || url.hasFragment() ||
      !url.userInfo().isEmpty())
    return std::unexpected(settings.baseUrl.isEmpty() ? u"its base URL is missing"_s
                                                      : u"its base URL is none, '%1'"_s.arg(settings.baseUrl));
  if (url.scheme() == "http"_L1 && !settings.key.isEmpty() && !isLoopback(url))
    return std::unexpected(u"its key goes to another host over https only"_s);
  return {};
}

}  // namespace

std::expected<Kind, QString> ProviderSettings::kindNamed(const QString& name) {
  const auto found = std::ranges::find_if(kKinds, [&](const auto& kind) { return kind.first == name; });
  if (found == kKinds.end())
    return std::unexpected(u"an AI provider is openai, anthropic, command or none, not '%1'"_s.arg(name));
  return found->second;
}

std::expected<ProviderSettings, QString> ProviderSettings::fromJson(const QJsonObject& object) {
  const auto kind = kindNamed(object.value("kind"_L1).toString());
  if (!kind) return std::unexpected(kind.error());
  ProviderSettings settings{.kind = *kind,
                            .baseUrl = object.value("baseUrl"_L1).toString().trimmed(),
                            .model = object.value("model"_L1).toString().trimmed(),
                            .imageModel = object.value("imageModel"_L1).toString().trimmed(),
                            .command = object.value("command"_L1).toString(),
                            .key = object.value("key"_L1).toString().trimmed().toUtf8(),
                            .problem = object.value("problem"_L1).toString()};
  return settings;
}

std::expected<void, QString> ProviderSettings::check() const {
  if (kind == Kind::none) return {};
  // It goes into a header.
  if (std::ranges::any_of(key, [](char c) { return c < ' '; }))
    return std::unexpected(u"its key has characters that no key has"_s);
  if (kind == Kind::command)
    return command.trimmed().isEmpty() ? std::unexpected(u"its command is missing"_s) : std::expected<void, QString>();
  if (kind == Kind::messages && model.isEmpty()) return std::unexpected(u"its model is missing"_s);
  if (kind == Kind::messages && baseUrl.isEmpty())
    return key.isEmpty() ? std::unexpected(u"its key is missing"_s) : std::expected<void, QString>();
  return checkUrl(*this);
}
