#pragma once

#include <QObject>

#include "services/ai_provider.h"
#include "services/built_in_service.h"
#include "services/user_credential.h"

/// Tells the built-in service who answers the AI tools: when it starts, and again whenever that changes. The key goes
/// from the keychain to the service's standard input and nowhere else. Main thread only.
class ProviderBrief : public QObject {
  Q_OBJECT

 public:
  ProviderBrief(AIProviderStore& provider, UserCredential& key, BuiltInService& service);

 private:
  using Tell = std::function<void(const QJsonObject&)>;

  void brief(const JobRef& job, const Tell& tell);

  AIProviderStore& provider_;
  UserCredential& key_;
};
