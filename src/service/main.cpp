#include <QCoreApplication>

#include <sys/stat.h>

#include <array>
#include <cstdio>

#include "service/command/commands.h"
#include "service/freed_memory.h"

using namespace Qt::StringLiterals;

namespace {

struct Command {
  QLatin1StringView name;
  int (*run)(const Arguments&);
  /// How it is called, beside what all of them take.
  QLatin1StringView call;
};

constexpr std::array kCommands = {
    Command{
        "serve"_L1, commands::serve,
        "serve [--listen ADDRESS:PORT] [--public-url URL] [--trust-proxy ADDRESS,…] [--credential-file FILE]\n"
        "                            [--rate-per-address N] [--rate-per-token N] [--connections N]\n"
        "                            [--connections-per-address N] [--patience SECONDS] [--drain SECONDS] "
        "[--embedded]\n"
        "                            [--ai-provider openai|anthropic|command] [--ai-base-url URL] [--ai-model MODEL]\n"
        "                            [--ai-image-model MODEL] [--ai-command LINE] [--ai-key-file FILE]\n"
        "                            [--ai-concurrency N] [--ai-time-limit SECONDS]"_L1},
    Command{"token"_L1, commands::token, "token add NAME [--service] [--plan PLAN] | list | revoke NAME"_L1},
    Command{"plan"_L1, commands::plan,
            "plan list | set NAME [--answers N] [--text N] [--image-answers N] [--image-generate N]"_L1},
    Command{"link"_L1, commands::link, "link show LINK | remove LINK"_L1},
    Command{"export"_L1, commands::exportLines, "export events | feedback | suggestions"_L1},
    Command{"purge"_L1, commands::purge, "purge"_L1},
};

int run(const Arguments& arguments) {
  if (arguments.has(u"help"_s) || arguments.words().value(0) == "help"_L1) {
    std::fputs(qPrintable(commands::usage()), stdout);
    return commands::kSuccess;
  }
  if (arguments.has(u"version"_s)) {
    std::puts("vantle-service " VANTLE_VERSION);
    return commands::kSuccess;
  }
  for (const Command& command : kCommands)
    if (arguments.words().value(0) == command.name) return command.run(arguments);
  return commands::refuse(u"a command is wanted"_s);
}

}  // namespace

int commands::fail(const QString& text, int status) {
  std::fprintf(stderr, "vantle-service: %s\n", qPrintable(text));
  return status;
}

int commands::refuse(const QString& text) {
  fail(text);
  std::fputs(qPrintable(usage()), stderr);
  return kUsage;
}

QString commands::usage() {
  QString text = u"usage: "_s;
  for (const Command& command : kCommands)
    text += (text.size() > 7 ? u"       "_s : QString()) + u"vantle-service "_s +
            QString::fromUtf8(command.call.data()) + u'\n';
  return text + u"All take --data FOLDER, --database URL and --config FILE, a file with 'option = value' lines.\n"_s;
}

int main(int argc, char** argv) {
  returnLargeBlocks();
  // What it keeps concerns nobody else on this machine.
  umask(077);
  // Finds Qt's database drivers; there is no event loop.
  const QCoreApplication application(argc, argv);
  const auto arguments = Arguments::parse(QCoreApplication::arguments().mid(1));
  return arguments ? run(*arguments) : commands::refuse(arguments.error());
}
