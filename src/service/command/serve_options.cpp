#include "service/command/serve_options.h"

#include <QFile>
#include <QUrl>

#include <arpa/inet.h>

#include "service/command/place.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kStandardListen = "127.0.0.1:8787"_L1;
/// Its parent is gone, or wants to be: nobody waits for long.
constexpr std::chrono::seconds kEmbeddedDrain{2};
/// What its parent waits for before it says who answers.
constexpr auto kNotToldYet = "The keychain has not given the AI provider's key yet. Unlock it and try again."_L1;

bool isAddress(const QString& text) {
  in6_addr parsed{};
  const QByteArray name = text.toLatin1();
  return inet_pton(AF_INET, name.constData(), &parsed) == 1 || inet_pton(AF_INET6, name.constData(), &parsed) == 1;
}

bool isLoopback(const QString& address) { return address.startsWith("127."_L1) || address == "::1"_L1; }

std::expected<void, QString> readListen(const QString& text, HttpServer::Options& server) {
  const auto colon = text.lastIndexOf(u':');
  QString address = text.first(std::max<qsizetype>(colon, 0));
  if (address.startsWith(u'[') && address.endsWith(u']')) address = address.mid(1, address.size() - 2);
  bool isPort = false;
  server.port = text.mid(colon + 1).toUShort(&isPort);
  server.address = address;
  if (!isPort || !isAddress(address))
    return std::unexpected(u"--listen wants an address and a port, such as 127.0.0.1:8787, not '%1'"_s.arg(text));
  return {};
}

std::expected<QByteArray, QString> readPublicUrl(const QString& text) {
  if (text.isEmpty()) return QByteArray();
  const QUrl url(text, QUrl::StrictMode);
  const bool isWeb = url.scheme() == "https"_L1 || url.scheme() == "http"_L1;
  if (!url.isValid() || !isWeb || url.host().isEmpty() || url.hasQuery() || url.hasFragment())
    return std::unexpected(u"--public-url wants a URL such as https://links.example.org, not '%1'"_s.arg(text));
  return url.adjusted(QUrl::StripTrailingSlash).toEncoded();
}

std::expected<void, QString> readNumbers(const Arguments& arguments, ServeOptions& options) {
  const auto rateAddress = arguments.number(u"rate-per-address"_s, 50, 0);
  const auto rateToken = arguments.number(u"rate-per-token"_s, 100, 0);
  const auto connections = arguments.number(u"connections"_s, 1024, 16);
  const auto perAddress = arguments.number(u"connections-per-address"_s, 512, 1);
  const auto patience = arguments.number(u"patience"_s, 30, 1);
  const auto drain = arguments.number(u"drain"_s, 30, 0);
  const auto concurrency = arguments.number(u"ai-concurrency"_s, 8, 1);
  const auto timeLimit = arguments.number(u"ai-time-limit"_s, 170, 1);
  for (const auto* number :
       {&rateAddress, &rateToken, &connections, &perAddress, &patience, &drain, &concurrency, &timeLimit})
    if (!*number) return std::unexpected(number->error());
  options.ratePerAddress = *rateAddress;
  options.ratePerToken = *rateToken;
  options.server.connections = static_cast<unsigned>(*connections);
  options.server.connectionsPerAddress = static_cast<unsigned>(*perAddress);
  options.server.patience = std::chrono::seconds(*patience);
  options.drain = std::chrono::seconds(*drain);
  options.aiConcurrency = *concurrency;
  options.aiTimeLimit = std::chrono::seconds(*timeLimit);
  return {};
}

std::expected<QByteArray, QString> readKey(const QString& path) {
  if (path.isEmpty()) return QByteArray();
  QFile file(path);
  QByteArray key = file.open(QIODevice::ReadOnly) ? file.readLine(4096).trimmed() : QByteArray();
  if (key.isEmpty()) return std::unexpected(u"there is no key in '%1'"_s.arg(path));
  return key;
}

std::expected<ProviderSettings, QString> readProvider(const Arguments& arguments) {
  const auto kind = ProviderSettings::kindNamed(arguments.value(u"ai-provider"_s, u"none"_s));
  if (!kind) return std::unexpected(kind.error());
  auto key = readKey(arguments.value(u"ai-key-file"_s));
  if (!key) return std::unexpected(key.error());
  ProviderSettings provider{.kind = *kind,
                            .baseUrl = arguments.value(u"ai-base-url"_s),
                            .model = arguments.value(u"ai-model"_s),
                            .imageModel = arguments.value(u"ai-image-model"_s),
                            .command = arguments.value(u"ai-command"_s),
                            .key = std::move(*key)};
  if (const auto checked = provider.check(); !checked)
    return std::unexpected(u"the AI provider cannot be used: %1"_s.arg(checked.error()));
  return provider;
}

/// For its parent alone, which needs no limits and waits for no drain.
void embed(ServeOptions& options) {
  options.isEmbedded = true;
  options.server.address = u"127.0.0.1"_s;
  options.server.port = 0;
  options.publicUrl.clear();
  options.credentialFile.clear();
  options.ratePerAddress = 0;
  options.ratePerToken = 0;
  options.drain = kEmbeddedDrain;
  if (options.provider.kind == ProviderSettings::Kind::none) options.provider.problem = kNotToldYet;
}

}  // namespace

std::expected<ServeOptions, QString> ServeOptions::read(const Arguments& arguments) {
  const QStringList own{u"listen"_s,         u"public-url"_s,       u"credential-file"_s,
                        u"trust-proxy"_s,    u"rate-per-address"_s, u"rate-per-token"_s,
                        u"connections"_s,    u"patience"_s,         u"connections-per-address"_s,
                        u"drain"_s,          u"embedded"_s,         u"ai-provider"_s,
                        u"ai-base-url"_s,    u"ai-model"_s,         u"ai-command"_s,
                        u"ai-image-model"_s, u"ai-key-file"_s,      u"ai-concurrency"_s,
                        u"ai-time-limit"_s};
  if (const QString wrong = arguments.unexpected(own + Place::options()); !wrong.isEmpty())
    return std::unexpected(u"'serve' has no option '--%1'"_s.arg(wrong));
  ServeOptions options;
  if (const auto read = readListen(arguments.value(u"listen"_s, kStandardListen), options.server); !read)
    return std::unexpected(read.error());
  const auto url = readPublicUrl(arguments.value(u"public-url"_s));
  if (!url) return std::unexpected(url.error());
  options.publicUrl = *url;
  if (const auto read = readNumbers(arguments, options); !read) return std::unexpected(read.error());
  auto provider = readProvider(arguments);
  if (!provider) return std::unexpected(provider.error());
  options.provider = std::move(*provider);
  options.credentialFile = arguments.value(u"credential-file"_s);
  for (const QString& proxy : arguments.value(u"trust-proxy"_s).split(u',', Qt::SkipEmptyParts))
    options.server.proxies.insert(proxy.trimmed().toLatin1());
  if (arguments.has(u"embedded"_s)) embed(options);
  // The host that a client names is no base for links that others open.
  if (!isLoopback(options.server.address) && options.publicUrl.isEmpty())
    return std::unexpected(u"a service that others reach needs --public-url"_s);
  return options;
}
