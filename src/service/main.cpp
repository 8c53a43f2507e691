#include <QFile>

#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <thread>

#include "service/event_log.h"
#include "service/http_server.h"
#include "service/serve_options.h"
#include "service/status_endpoints.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kFailure = 1;
constexpr int kUsage = 2;

/// The signals that end the service; blocked everywhere, so that only the main thread takes them.
sigset_t endSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGTERM, SIGINT}) sigaddset(&signals, signal);
  return signals;
}

/// The parent's end of the pipe closes when the parent ends, however it ends.
void endWithStdin() {
  std::thread([] {
    std::array<char, 64> ignored{};
    while (read(STDIN_FILENO, ignored.data(), ignored.size()) > 0) continue;
    kill(getpid(), SIGTERM);
  }).detach();
}

QByteArray readCredential(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readLine(4096).trimmed() : QByteArray();
}

int serve(const ServeOptions& options) {
  const sigset_t signals = endSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  const QByteArray credential =
      options.isEmbedded ? BearerCheck::makeCredential() : readCredential(options.credentialFile);
  EventLog events(options.dataFolder + u"/events.jsonl"_s);
  Router router{BearerCheck(credential)};
  router.add("GET", "/health", std::make_unique<HealthEndpoint>());
  router.add("GET", "/v1/quota",
             std::make_unique<QuotaEndpoint>(options.isEmbedded ? u"embedded"_s : u"self-hosted"_s));
  router.add("POST", "/v1/events", std::make_unique<EventsEndpoint>(events));
  HttpServer server(router);
  if (!server.start(options.port)) {
    std::fprintf(stderr, "vantle-service: port %d is taken\n", options.port);
    return kFailure;
  }
  std::fprintf(stderr, "vantle-service: http://127.0.0.1:%d\n", server.port());
  if (credential.isEmpty()) std::fputs("vantle-service: no credential, so only /health answers\n", stderr);
  if (options.isEmbedded) {
    std::printf("{\"port\": %d, \"token\": \"%s\"}\n", server.port(), credential.constData());
    std::fflush(stdout);
    endWithStdin();
  }
  int received = 0;
  sigwait(&signals, &received);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  QStringList arguments;
  for (int i = 1; i < argc; ++i) arguments.append(QString::fromLocal8Bit(argv[i]));
  const auto options = ServeOptions::parse(arguments);
  if (options) return serve(*options);
  std::fprintf(stderr, "vantle-service: %s\n%s\n", qPrintable(options.error()), qPrintable(ServeOptions::usage()));
  return kUsage;
}
