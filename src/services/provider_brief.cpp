#include "services/provider_brief.h"

using namespace Qt::StringLiterals;

ProviderBrief::ProviderBrief(AIProviderStore& provider, UserCredential& key, BuiltInService& service)
    : provider_(provider), key_(key) {
  service.setBrief([this](const JobRef& job, const Tell& tell) { brief(job, tell); });
  connect(&provider, &StoreBase::changed, this, [&service] { service.briefAnew(); });
  connect(&key, &UserCredential::changed, this, [&service] { service.briefAnew(); });
}

void ProviderBrief::brief(const JobRef& job, const Tell& tell) {
  QJsonObject told;
  provider_.value().write(told);
  const ProviderKind kind = provider_.value().kind;
  if (kind != ProviderKind::openAICompatible && kind != ProviderKind::anthropic) {
    tell(told);
    return;
  }
  // A provider on this computer may do without one.
  const bool needsKey = kind == ProviderKind::anthropic || provider_.value().baseUrl.startsWith("https:"_L1);
  key_.read(job, [told, tell, needsKey](const auto& key) mutable {
    if (key)
      told.insert("key"_L1, QString::fromUtf8(*key));
    else if (needsKey)
      told.insert("problem"_L1, key.error().description());
    tell(told);
  });
}
