// Types what it reads from stdin into the focused window, as the application would, and says how long that took.
// type_text [--return] [--chord KEYCODE]

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QTextStream>

#include <chrono>

#include "platform/x11/x11_key_events.h"
#include "tools/keystrokes/keystroke_sender.h"

using namespace Qt::StringLiterals;

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  QCommandLineParser parser;
  parser.addOptions(
      {{u"return"_s, u"press Return at the end"_s}, {u"chord"_s, u"press Command and this key"_s, u"code"_s}});
  parser.process(app);

  QFile input;
  if (!input.open(stdin, QIODevice::ReadOnly)) return 2;
  KeySequence steps = KeystrokeSender::sequence(QString::fromUtf8(input.readAll()), parser.isSet(u"return"_s));
  if (parser.isSet(u"chord"_s)) steps = {PressKey{parser.value(u"chord"_s).toUInt(), 0x0100}};

  const auto events = makeX11KeyEvents();
  const auto start = std::chrono::steady_clock::now();
  int status = 0;
  events->perform(std::move(steps), [&](const std::expected<void, KeyEventError>& result) {
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    QTextStream(stdout) << taken.count() << '\n';
    if (!result) QTextStream(stderr) << result.error().description() << '\n';
    status = result ? 0 : 1;
    QCoreApplication::quit();
  });
  QCoreApplication::exec();
  return status;
}
