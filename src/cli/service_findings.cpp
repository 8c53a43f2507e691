#include "cli/service_findings.h"

#include <QEventLoop>
#include <QFileInfo>
#include <QTimer>

#include "services/service_configuration.h"
#include "services/service_process.h"
#include "services/user_credential.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A keychain that asks the user to unlock it answers when the user does, which nobody waits for here.
constexpr auto kKeychainPatience = 2s;

ServiceMode modeIn(const Folders& folders) { return ServiceConfiguration(folders.file(u"services.json"_s)).mode(); }

/// None: no answer in time.
std::optional<std::expected<QByteArray, CredentialError>> readCredential(CredentialVault& vault) {
  std::optional<std::expected<QByteArray, CredentialError>> answer;
  const Job job = Job::start();
  QEventLoop loop;
  QTimer::singleShot(kKeychainPatience, &loop, &QEventLoop::quit);
  vault.read(UserCredential::kServiceAccount, job, [&](const auto& secret) {
    answer = secret;
    loop.quit();
  });
  // The command line has no other event loop that this one could stand inside.
  loop.exec();
  return answer;
}

Finding builtInFinding(const Folders& folders) {
  const QString program = ServiceProcess::Places::standard(folders).program;
  const bool isThere = QFileInfo(program).isExecutable();
  return {u"Service"_s, isThere,
          isThere ? u"built-in"_s : u"the built-in one is missing: there is no %1"_s.arg(program)};
}

}  // namespace

Finding serviceFinding(const Folders& folders) {
  ServiceConfiguration configuration(folders.file(u"services.json"_s));
  const auto hosts = configuration.hosts();
  if (!hosts) return {u"Service"_s, false, hosts.error().description()};
  if (configuration.mode() == ServiceMode::builtIn) return builtInFinding(folders);
  const QString kind = configuration.mode() == ServiceMode::ownHosts ? u"own hosts"_s : u"Vantle's service"_s;
  const auto shown = [](const QUrl& url) { return url.isEmpty() ? u"not set"_s : url.toString(); };
  return {u"Service"_s, true, u"%1: API %2, links %3"_s.arg(kind, shown(hosts->api), shown(hosts->links))};
}

Finding keychainFinding(const Folders& folders, CredentialVault& vault) {
  const bool isNeeded = modeIn(folders) != ServiceMode::builtIn;
  const auto credential = readCredential(vault);
  if (!credential) return {u"Keychain"_s, !isNeeded, u"it does not answer; perhaps it waits to be unlocked"_s};
  if (!*credential) return {u"Keychain"_s, !isNeeded, credential->error().description()};
  return {u"Keychain"_s, true, (*credential)->isEmpty() ? u"holds no credential"_s : u"holds your credential"_s};
}
