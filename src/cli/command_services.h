#pragma once

#include <QEventLoop>

#include "base/clock.h"
#include "cli/command.h"
#include "core/net/http_client.h"
#include "services/service_process.h"
#include "services/services.h"

/// The built-in service for a command: the one of the running application. When that does not run, one of the
/// command's own, unless something is to be left behind that only a running service can give out, such as a link.
class CommandLineService final : public BuiltInService {
 public:
  enum class Purpose { answer, link };

  CommandLineService(const Folders& folders, Clock& clock, Purpose purpose)
      : own_(ServiceProcess::Places::standard(folders), clock), purpose_(purpose) {}

  void locate(const JobRef& job, Answer answer) override;
  void setBrief(const Brief& brief) override { own_.setBrief(brief); }
  void briefAnew() override { own_.briefAnew(); }

 private:
  ServiceProcess own_;
  Purpose purpose_;
};

/// What a command needs to speak with the services.
struct CommandServices {
  CommandServices(CommandContext& context, CommandLineService::Purpose purpose)
      : platform(context.makePlatform()),
        builtIn(context.folders, clock, purpose),
        services(context.folders, http, *platform.credentials, builtIn, clock) {}

  SystemClock clock;
  Platform platform;
  QtHttpClient http;
  CommandLineService builtIn;
  Services services;
};

/// Runs `start(job, done)` and waits for what it gives to `done`. The command line has no other event loop that this
/// one could stand inside.
template <class Value, class Start>
Value awaited(Start start) {
  std::optional<Value> value;
  const Job job = Job::start();
  QEventLoop loop;
  start(job, [&](const Value& given) {
    value = given;
    loop.quit();
  });
  if (!value) loop.exec();
  return *std::move(value);
}
