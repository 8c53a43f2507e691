#include <QApplication>
#include <QProcess>
#include <QTextStream>

#include <cstdio>

#include "app/application.h"
#include "cli/command.h"
#include "core/net/app_channel.h"
#include "platform/display.h"
#include "platform/termination.h"

using namespace Qt::StringLiterals;

namespace {

void nameApplication() {
  QCoreApplication::setApplicationName(u"Vantle"_s);
  QCoreApplication::setOrganizationName(u"Vantle"_s);
  QCoreApplication::setApplicationVersion(QStringLiteral(VANTLE_VERSION));
}

/// With streams of its own: whoever reads what the command prints would wait for the application's end otherwise.
bool startInBackground() {
  QProcess process;
  process.setProgram(QCoreApplication::applicationFilePath());
  process.setStandardInputFile(QProcess::nullDevice());
  process.setStandardOutputFile(QProcess::nullDevice());
  process.setStandardErrorFile(QProcess::nullDevice());
  return process.startDetached();
}

int runCommand(const QStringList& arguments, bool hasDisplay) {
  QTextStream out(stdout);
  QTextStream err(stderr);
  CommandContext context{out, err, Folders::standard(), startInBackground,
                         [hasDisplay] { return hasDisplay ? makePlatform() : makeNullPlatform(); }};
  return runCommandLine(arguments, context);
}

int runCommandLineProcess(int argc, char** argv) {
  // Only the doctor looks at the display; everything else has to work without one and starts faster for it.
  if (qstrcmp(argv[1], "doctor") == 0 && prepareDisplay()) {
    const QGuiApplication application(argc, argv);
    nameApplication();
    return runCommand(QCoreApplication::arguments().mid(1), true);
  }
  const QCoreApplication application(argc, argv);
  nameApplication();
  return runCommand(QCoreApplication::arguments().mid(1), false);
}

int runApplication(int argc, char** argv) {
  if (AppClient::request({{u"do"_s, u"forward"_s}})) return exit_code::kSuccess;
  if (!prepareDisplay()) {
    std::fputs("vantle: there is no display; 'vantle help' lists what works without one\n", stderr);
    return exit_code::kFailure;
  }
  QApplication qtApplication(argc, argv);
  nameApplication();
  QApplication::setQuitOnLastWindowClosed(false);
  const TerminationSignals termination;
  QObject::connect(&termination, &TerminationSignals::requested, &qtApplication, &QCoreApplication::quit);
  Application application;
  if (!application.start()) {
    std::fputs("vantle: another one is just starting\n", stderr);
    return exit_code::kFailure;
  }
  return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) { return argc > 1 ? runCommandLineProcess(argc, argv) : runApplication(argc, argv); }
