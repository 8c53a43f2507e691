#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <thread>

#include "service/accounts/secret.h"
#include "service/command/commands.h"
#include "service/command/kept_port.h"
#include "service/command/serve_options.h"
#include "service/command/site.h"
#include "service/log.h"

using namespace Qt::StringLiterals;

namespace commands {

namespace {

/// The signals that the main thread takes, and nobody else: they are blocked everywhere. What an embedded service has
/// to know anew its parent tells it.
sigset_t awaitedSignals(const ServeOptions& options) {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGTERM, SIGINT}) sigaddset(&signals, signal);
  if (!options.isEmbedded) sigaddset(&signals, SIGHUP);
  return signals;
}

/// From the files that the command line names. One that cannot be used is no reason to be without one.
void readProviderAnew(ProviderSlot& providers) {
  const auto arguments = Arguments::parse(QCoreApplication::arguments().mid(1));
  const auto options = arguments ? ServeOptions::read(*arguments) : std::unexpected(arguments.error());
  if (!options) return logLine("The AI provider stays as it was: %s", qPrintable(options.error()));
  providers.set(options->provider);
  logLine("The AI provider is read anew");
}

/// What the parent says, a line each: the AI provider, with its key. That it has been taken is said back, so that
/// nobody asks before.
void takeLine(const QByteArray& line, ProviderSlot& providers) {
  auto settings = ProviderSettings::fromJson(QJsonDocument::fromJson(line).object());
  providers.set(settings ? *settings : ProviderSettings{.problem = u"The AI provider is not understood."_s});
  std::puts("{\"provider\": \"set\"}");
  std::fflush(stdout);
}

/// The parent's end of the pipe closes when the parent ends, however it ends.
void listenToParent(const std::shared_ptr<ProviderSlot>& providers) {
  std::thread([providers] {
    QByteArray held;
    std::array<char, 4096> room{};
    for (ssize_t count = 0; (count = read(STDIN_FILENO, room.data(), room.size())) > 0;) {
      held.append(room.data(), count);
      for (qsizetype end = held.indexOf('\n'); end >= 0; end = held.indexOf('\n')) {
        takeLine(held.first(end), *providers);
        held.remove(0, end + 1);
      }
    }
    kill(getpid(), SIGTERM);
  }).detach();
}

/// A connection and a file for each upload.
void allowManyFiles() {
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  limit.rlim_cur = limit.rlim_max;
  if (setrlimit(RLIMIT_NOFILE, &limit) == 0) return;
  // macOS names no limit, and takes no more than this.
  constexpr rlim_t kMostFiles = 10'240;
  limit.rlim_cur = std::min(limit.rlim_max, kMostFiles);
  setrlimit(RLIMIT_NOFILE, &limit);
}

std::expected<QByteArray, QString> readCredential(const QString& path) {
  QFile file(path);
  QByteArray credential = file.open(QIODevice::ReadOnly) ? file.readLine(4096).trimmed() : QByteArray();
  if (credential.isEmpty()) return std::unexpected(u"there is no credential in '%1'"_s.arg(path));
  return credential;
}

std::expected<QByteArray, QString> ownCredential(const ServeOptions& options) {
  if (options.isEmbedded) return makeSecret();
  return options.credentialFile.isEmpty() ? QByteArray() : readCredential(options.credentialFile);
}

void greet(const ServeOptions& options, std::uint16_t port, const QByteArray& credential,
           const std::shared_ptr<ProviderSlot>& providers) {
  const QString& address = options.server.address;
  const QString host = address.contains(u':') ? u'[' + address + u']' : address;
  std::fprintf(stderr, "vantle-service: http://%s:%d\n", qPrintable(host), port);
  if (!options.isEmbedded) return;
  std::printf("{\"port\": %d, \"token\": \"%s\"}\n", port, credential.constData());
  std::fflush(stdout);
  listenToParent(providers);
}

void waitForEnd(const sigset_t& signals, ProviderSlot& providers) {
  const bool hadTerminal = isatty(STDERR_FILENO) != 0;
  // A terminal that has been closed sends the same signal.
  const auto isEnd = [&](int signal) { return signal != SIGHUP || (hadTerminal && isatty(STDERR_FILENO) == 0); };
  int received = 0;
  while (sigwait(&signals, &received) != 0 || !isEnd(received)) readProviderAnew(providers);
  // Whoever asks a second time does not want to wait.
  pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
}

/// Null when it cannot listen.
std::unique_ptr<HttpServer> start(const Router& router, const HttpServer::Options& options) {
  auto server = std::make_unique<HttpServer>(router, options);
  return server->start() ? std::move(server) : nullptr;
}

/// On the port of the last time, or on any when somebody else has that now.
std::unique_ptr<HttpServer> startEmbedded(const Router& router, HttpServer::Options options, const KeptPort& kept) {
  options.port = kept.value();
  auto server = start(router, options);
  if (!server && options.port != 0) {
    options.port = 0;
    server = start(router, options);
  }
  if (server) kept.keep(server->port());
  return server;
}

}  // namespace

int serve(const Arguments& arguments) {
  const auto options = ServeOptions::read(arguments);
  if (!options) return refuse(options.error());
  const sigset_t signals = awaitedSignals(*options);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  // A client that is gone and a disk that is full are answers of the calls themselves.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  allowManyFiles();
  const auto credential = ownCredential(*options);
  if (!credential) return fail(credential.error());
  const auto place = Place::open(arguments);
  if (!place) return fail(place.error());
  if (!(*place)->lock()) return fail(u"another vantle-service runs on '%1'"_s.arg((*place)->folder()));
  (*place)->blobs().removeLeftovers();
  Site site(**place, *options, *credential);
  const auto server = options->isEmbedded ? startEmbedded(site.router(), options->server, KeptPort((*place)->folder()))
                                          : start(site.router(), options->server);
  if (!server) return fail(u"%1:%2 cannot be listened on"_s.arg(options->server.address).arg(options->server.port));
  greet(*options, server->port(), *credential, site.providers());
  waitForEnd(signals, *site.providers());
  server->drain(options->drain);
  return kSuccess;
}

}  // namespace commands
