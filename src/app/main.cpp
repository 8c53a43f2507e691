#include <QApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTextStream>

#include <cstdio>

#include "app/application.h"
#include "base/logging.h"
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
bool startInBackground(const QString& program) {
  QProcess process;
  process.setProgram(program);
  process.setStandardInputFile(QProcess::nullDevice());
  process.setStandardOutputFile(QProcess::nullDevice());
  process.setStandardErrorFile(QProcess::nullDevice());
  return process.startDetached();
}

int runCommand(const QStringList& arguments, bool hasDisplay) {
  QTextStream out(stdout);
  QTextStream err(stderr);
  QFile input;
  if (!input.open(stdin, QIODevice::ReadOnly)) return exit_code::kFailure;
  CommandContext context{out,
                         err,
                         Folders::standard(),
                         QDir::homePath(),
                         [] { return startInBackground(QCoreApplication::applicationFilePath()); },
                         [hasDisplay] { return hasDisplay ? makePlatform() : makeHeadlessPlatform(); },
                         &input,
                         &makeArchiver};
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

/// `program` is told for whoever starts it again once everything of this run is gone.
int runApplication(int argc, char** argv, QString& program) {
  if (AppClient::request({{u"do"_s, u"forward"_s}})) return exit_code::kSuccess;
  if (!prepareDisplay()) {
    std::fputs("vantle: there is no display; 'vantle help' lists what works without one\n", stderr);
    return exit_code::kFailure;
  }
  QApplication qtApplication(argc, argv);
  nameApplication();
  program = QCoreApplication::applicationFilePath();
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

/// The next run finds the shortcuts free: this one's connection to the display is closed by then.
int runApplicationUntilItEnds(int argc, char** argv) {
  QString program;
  const int code = runApplication(argc, argv, program);
  if (code != Application::kStartAnew) return code;
  return startInBackground(program) ? exit_code::kSuccess : exit_code::kFailure;
}

}  // namespace

int main(int argc, char** argv) {
  keepTextsOutOfTheLog();
  return argc > 1 ? runCommandLineProcess(argc, argv) : runApplicationUntilItEnds(argc, argv);
}
