#pragma once

#include <QStringList>

#include "services/ai_provider.h"
#include "services/service_error.h"
#include "services/user_credential.h"

/// Whether the AI provider can be used, found out without spending anything: it is asked for its models, a command is
/// looked for and not run. Main thread only.
class ProviderCheck {
 public:
  /// What was found, in words, or what is wrong.
  using Done = std::function<void(std::expected<QString, ServiceError>)>;

  ProviderCheck(HttpClient& http, UserCredential& key) : http_(http), key_(key) {}

  void run(const AIProvider& provider, const JobRef& job, Done done);

 private:
  void askForModels(const AIProvider& provider, const QByteArray& key, const JobRef& job, const Done& done);

  HttpClient& http_;
  UserCredential& key_;
};

/// The program that a command line starts: an absolute path, or found in the folders of PATH and in those that login
/// shells commonly add, of which a program started from the desktop knows nothing.
std::expected<QString, ServiceError> resolveCommand(const QString& commandLine);
