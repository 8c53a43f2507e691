#pragma once

#include <QCoreApplication>
#include <QTemporaryDir>

#include "services/services.h"
#include "support/fake_clock.h"
#include "support/fake_http.h"
#include "support/fake_vault.h"

/// A built-in service that is wherever the test says.
class FakeBuiltIn final : public BuiltInService {
 public:
  void locate(const JobRef& job, Answer answer) override {
    ++starts;
    job.later([this, answer = std::move(answer)] { answer(place); });
  }
  bool isRunning() const override { return starts > 0; }

  std::expected<ServiceLocation, ServiceError> place = ServiceLocation{
      QUrl(QStringLiteral("http://127.0.0.1:9")), QUrl(QStringLiteral("http://127.0.0.1:9")), "embedded", true};
  int starts = 0;
};

/// Everything that speaks with the services, over a temporary folder, no network and a keychain in memory.
struct ServiceWorld {
  /// Own hosts "https://api.example" and "https://links.example" with the user's credential "secret".
  void useOwnHosts() {
    services.configuration.update([](ServiceSettings& settings) {
      settings = {QStringLiteral("https://api.example"), QStringLiteral("https://links.example"), {}};
    });
    vault.secrets[QStringLiteral("api")] = "secret";
  }

  QTemporaryDir directory;
  Folders folders{directory.path()};
  FakeClock clock;
  FakeHttp http;
  FakeVault vault;
  FakeBuiltIn builtIn;
  Services services{folders, http, vault, builtIn, clock};
};
