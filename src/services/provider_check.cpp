#include "services/provider_check.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>

#include <algorithm>

#include "base/shell_words.h"
#include "services/base_url.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kTimeLimit = 20s;
constexpr auto kAnthropicBase = "https://api.anthropic.com"_L1;

using Reason = ServiceError::Reason;

std::unexpected<ServiceError> refuse(const QString& text) {
  return std::unexpected(ServiceError{Reason::configuration, text});
}

/// The request for the list of models, without the key.
std::expected<HttpRequest, ServiceError> modelsRequest(const AIProvider& provider) {
  const bool isAnthropic = provider.kind == ProviderKind::anthropic;
  const QString typed = provider.baseUrl.isEmpty() && isAnthropic ? QString(kAnthropicBase) : provider.baseUrl;
  if (typed.isEmpty()) return refuse(u"Enter the base URL first."_s);
  const auto base = parseBaseUrl(typed);
  if (!base) return refuse(base.error().description());
  HttpRequest request{.method = "GET", .url = below(*base, u"/models"_s), .deadline = kTimeLimit};
  if (!isAnthropic) return request;
  request.url = below(*base, u"/v1/models"_s);
  request.url.setQuery(u"limit=1000"_s);
  request.headers.emplace_back("anthropic-version", "2023-06-01");
  return request;
}

/// The ids in {"data": [{"id": …}, …]}, the shape that both kinds of services answer with.
std::expected<QStringList, ServiceError> modelIDs(const QByteArray& body) {
  const QJsonValue data = QJsonDocument::fromJson(body).object().value("data"_L1);
  if (!data.isArray()) return refuse(u"What answers there is no such provider: it sent no list of models."_s);
  QStringList ids;
  for (const QJsonValue& entry : data.toArray()) ids.append(entry["id"_L1].toString());
  return ids;
}

std::expected<QString, ServiceError> judge(const HttpResponse& response, const QString& model) {
  if (response.status == 401 || response.status == 403)
    return refuse(u"The provider does not accept the key (HTTP %1)."_s.arg(response.status));
  if (response.status == 404) return refuse(u"There is no list of models (HTTP 404). Is the base URL right?"_s);
  if (!response.isSuccess()) return refuse(httpFailure(u"The provider failed"_s, response));
  const auto ids = modelIDs(response.body);
  if (!ids) return std::unexpected(ids.error());
  if (model.isEmpty()) return refuse(u"The provider answers, with %1 models. Enter one of them."_s.arg(ids->size()));
  if (!ids->contains(model)) return refuse(u"The provider answers, but has no model “%1”."_s.arg(model));
  return u"The provider answers and has the model “%1”."_s.arg(model);
}

QStringList loginShellFolders() {
  return {QDir::home().filePath(u".local/bin"_s), QDir::home().filePath(u"bin"_s), u"/usr/local/bin"_s,
          u"/opt/homebrew/bin"_s};
}

}  // namespace

std::expected<QString, ServiceError> resolveCommand(const QString& commandLine) {
  const auto words = shellWords(commandLine);
  if (!words) return refuse(u"The command has a quote that does not end."_s);
  QString program = words->value(0);
  if (program.isEmpty()) return refuse(u"Enter the command first."_s);
  if (program.startsWith("~/"_L1)) program = QDir::home().filePath(program.mid(2));
  if (program.contains(u'/')) {
    const QFileInfo file(program);
    if (!file.isAbsolute()) return refuse(u"Give “%1” with its whole path."_s.arg(program));
    if (!file.isFile()) return refuse(u"There is no program %1."_s.arg(program));
    if (!file.isExecutable()) return refuse(u"%1 is not executable."_s.arg(program));
    return program;
  }
  QString found = QStandardPaths::findExecutable(program);
  if (found.isEmpty()) found = QStandardPaths::findExecutable(program, loginShellFolders());
  if (found.isEmpty()) return refuse(u"There is no program “%1” in PATH."_s.arg(program));
  return found;
}

void ProviderCheck::run(const AIProvider& provider, const JobRef& job, Done done) {
  if (provider.kind == ProviderKind::none || provider.kind == ProviderKind::command) {
    job.later([provider, done = std::move(done)] {
      const auto program = provider.kind == ProviderKind::command ? resolveCommand(provider.command)
                                                                  : refuse(u"Choose a provider first."_s);
      if (program)
        done(u"The command is there: %1"_s.arg(*program));
      else
        done(std::unexpected(program.error()));
    });
    return;
  }
  key_.read(job, [this, provider, job, done = std::move(done)](const auto& key) {
    if (key)
      askForModels(provider, *key, job, done);
    else
      done(std::unexpected(ServiceError::of(key.error())));
  });
}

void ProviderCheck::askForModels(const AIProvider& provider, const QByteArray& key, const JobRef& job,
                                 const Done& done) {
  auto request = modelsRequest(provider);
  const bool isAnthropic = provider.kind == ProviderKind::anthropic;
  if (request && isAnthropic && key.isEmpty()) request = refuse(u"Enter the provider's key first."_s);
  if (!request) {
    done(std::unexpected(request.error()));
    return;
  }
  if (isAnthropic)
    request->headers.emplace_back("x-api-key", key);
  else if (!key.isEmpty())
    request->headers.emplace_back("Authorization", "Bearer " + key);
  http_.send(*request, job, [done, model = provider.model](const auto& response) {
    if (response)
      done(judge(*response, model));
    else
      done(std::unexpected(ServiceError::of(response.error())));
  });
}
