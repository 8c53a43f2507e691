#pragma once

#include "core/settings/folders.h"
#include "services/ai_provider.h"
#include "services/environments.h"
#include "services/event_sender.h"
#include "services/provider_brief.h"
#include "services/provider_check.h"
#include "services/quota_client.h"

/// The one instance of everything that speaks with the services, in order of construction. Main thread only.
struct Services {
  Services(const Folders& folders, HttpClient& client, CredentialVault& vault, BuiltInService& child,
           const Clock& clock)
      : http(client),
        builtIn(child),
        configuration(folders.file(QStringLiteral("services.json"))),
        credential(vault, UserCredential::kServiceAccount),
        environments(folders, api),
        quota(clock),
        provider(folders.file(QStringLiteral("ai-provider.json"))),
        providerKey(vault, UserCredential::kProviderAccount) {}

  HttpClient& http;
  BuiltInService& builtIn;
  ServiceConfiguration configuration;
  UserCredential credential;
  MeteredAPI api{configuration, builtIn, credential};
  Environments environments;
  EventSender events{api, http};
  QuotaStore quota;
  QuotaClient quotaClient{api, http, quota};
  AIProviderStore provider;
  UserCredential providerKey;
  ProviderCheck providerCheck{http, providerKey};
  ProviderBrief providerBrief{provider, providerKey, builtIn};
};
