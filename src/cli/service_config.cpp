#include "cli/service_config.h"

#include <QIODevice>

#include <algorithm>
#include <array>

#include "cli/command_services.h"
#include "platform/hidden_typing.h"
#include "services/base_url.h"

using namespace Qt::StringLiterals;

namespace {

/// No credential is as long; somebody has piped in something else.
constexpr qint64 kLongestSecret = 16 * 1024;

struct Field {
  QLatin1StringView name;
  QString ServiceSettings::* value;
  bool isSecret = false;
};

constexpr std::array kFields = {
    Field{"api"_L1, &ServiceSettings::api},
    Field{"links"_L1, &ServiceSettings::links},
    Field{"token"_L1, &ServiceSettings::token, true},
};

constexpr auto kCredential = "credential"_L1;

const Field* field(const QString& name) {
  const auto found = std::ranges::find(kFields, name, &Field::name);
  return found == kFields.end() ? nullptr : &*found;
}

int fail(const QString& text, CommandContext& context) {
  context.err << "vantle: " << text << '\n';
  return exit_code::kFailure;
}

/// One line of standard input; a terminal is asked for it and does not show it.
std::expected<QString, QString> readSecret(QLatin1StringView name, CommandContext& context) {
  if (!context.input) return std::unexpected(u"there is no standard input"_s);
  const HiddenTyping hidden;
  if (hidden.isTerminal()) context.err << "The " << name << " (it is not shown): " << Qt::flush;
  const QByteArray line = context.input->readLine(kLongestSecret + 1);
  if (hidden.isTerminal()) context.err << '\n' << Qt::flush;
  if (line.size() > kLongestSecret) return std::unexpected(u"the %1 is too long"_s.arg(name));
  QString secret = QString::fromUtf8(line).trimmed();
  const auto isUnfit = [](QChar character) { return character < u'!' || character > u'~'; };
  if (secret.isEmpty()) return std::unexpected(u"there is no %1 on standard input"_s.arg(name));
  if (std::any_of(secret.cbegin(), secret.cend(), isUnfit))
    return std::unexpected(u"the %1 has characters that no credential has"_s.arg(name));
  return secret;
}

ServiceConfiguration configuration(const CommandContext& context) {
  return ServiceConfiguration(context.folders.file(u"services.json"_s));
}

int setHost(const Field& host, const QString& text, CommandContext& context) {
  const auto url = parseBaseUrl(text);
  if (!url) return fail(url.error().description(), context);
  configuration(context).update([&](ServiceSettings& settings) { settings.*host.value = url->toString(); });
  return exit_code::kSuccess;
}

int setToken(const Field& token, CommandContext& context) {
  const auto secret = readSecret(token.name, context);
  if (!secret) return fail(secret.error(), context);
  configuration(context).update([&](ServiceSettings& settings) { settings.*token.value = *secret; });
  return exit_code::kSuccess;
}

using Stored = std::expected<void, CredentialError>;

int finish(const Stored& stored, CommandContext& context) {
  return stored ? exit_code::kSuccess : fail(stored.error().description(), context);
}

int setCredential(CommandContext& context) {
  const auto secret = readSecret(kCredential, context);
  if (!secret) return fail(secret.error(), context);
  const Platform platform = context.makePlatform();
  return finish(awaited<Stored>([&](const JobRef& job, auto done) {
                  platform.credentials->write(UserCredential::kServiceAccount, secret->toUtf8(), job, done);
                }),
                context);
}

int removeCredential(CommandContext& context) {
  const Platform platform = context.makePlatform();
  return finish(awaited<Stored>([&](const JobRef& job, auto done) {
                  platform.credentials->remove(UserCredential::kServiceAccount, job, done);
                }),
                context);
}

int useHosts(bool isOwn, CommandContext& context) {
  ServiceConfiguration store = configuration(context);
  store.update([isOwn](ServiceSettings& settings) { settings.useOwnHosts = isOwn; });
  if (isOwn && store.mode() != ServiceMode::ownHosts)
    context.err << "vantle: there are no own hosts yet; 'vantle config service api <url>' sets one\n";
  return exit_code::kSuccess;
}

int wrongWords(CommandContext& context) {
  context.err << "vantle: say what of the service to set\n"
                 "    service api <url>, service links <url>\n"
                 "    service token, service credential         read from standard input\n"
                 "    service remove api|links|token|credential\n"
                 "    service use own|standard\n";
  return exit_code::kUsage;
}

int remove(const QString& name, CommandContext& context) {
  if (name == kCredential) return removeCredential(context);
  const Field* chosen = field(name);
  if (!chosen) return wrongWords(context);
  configuration(context).update([&](ServiceSettings& settings) { (settings.*chosen->value).clear(); });
  return exit_code::kSuccess;
}

int runWithValue(const QString& what, const QString& value, CommandContext& context) {
  if (what == "remove"_L1) return remove(value, context);
  if (what == "use"_L1 && (value == "own"_L1 || value == "standard"_L1)) return useHosts(value == "own"_L1, context);
  const Field* host = field(what);
  if (host && host->isSecret)
    return usageError(commandNamed("config"_L1), u"a secret is read from standard input, not given as a word"_s,
                      context);
  return host ? setHost(*host, value, context) : wrongWords(context);
}

}  // namespace

int runServiceConfig(const QStringList& words, CommandContext& context) {
  if (words.size() == 2) return runWithValue(words[0], words[1], context);
  if (words.size() != 1) return wrongWords(context);
  if (words[0] == kCredential) return setCredential(context);
  const Field* token = field(words[0]);
  return token && token->isSecret ? setToken(*token, context) : wrongWords(context);
}
