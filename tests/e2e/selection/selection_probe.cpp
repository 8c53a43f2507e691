// Reads the selection of whatever is in front and puts another text in its place, as the application would. A line on
// stdin is an order, a line of JSON on stdout tells what came of it; the next order comes after that.
//   read       the text, whether the clipboard is displaced now, milliseconds
//   press      the same, once Ctrl+Alt+Backslash is pressed
//   put TEXT   replaces what was read last by a JSON string: the outcome
//   restore    puts the clipboard back as it was before what was read last

#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSocketNotifier>
#include <QTextStream>

#include <iostream>
#include <string>

#include "base/clock.h"
#include "platform/carbon_modifiers.h"
#include "platform/platform.h"
#include "tools/keystrokes/keystroke_sender.h"
#include "tools/text_transform/copying_selection_reader.h"
#include "tools/text_transform/typing_selection_replacer.h"

using namespace Qt::StringLiterals;

namespace {

class Probe {
 public:
  Probe() {
    platform_.hotkeys->install([this](std::uint32_t) { read(); });
    const auto registered = platform_.hotkeys->registerHotkey(1, 42, carbon::kControl | carbon::kOption);
    if (!registered) qFatal("the shortcut is taken");
  }

  void takeOrder() {
    std::string line;
    if (!std::getline(std::cin, line)) return QCoreApplication::quit();
    const QString order = QString::fromStdString(line);
    if (order == "read"_L1) return read();
    if (order == "press"_L1) return tell({{u"ready"_s, true}});
    if (order == "restore"_L1) return restore();
    const QJsonDocument list = QJsonDocument::fromJson("[" + order.section(u' ', 1).toUtf8() + "]");
    put(list.array()[0].toString());
  }

 private:
  void read() {
    job_ = Job::start();
    const auto start = clock_.monotonic();
    reader_.readSelectedText(job_, [this, start](const Selection& selection) {
      selection_ = selection;
      const std::chrono::duration<double, std::milli> taken = clock_.monotonic() - start;
      QJsonObject answer{{u"displaced"_s, selection.previousClipboard != nullptr}, {u"milliseconds"_s, taken.count()}};
      if (selection.text) answer[u"text"_s] = *selection.text;
      tell(answer);
    });
  }

  void put(const QString& result) {
    replacer_.replace(
        selection_, result, job_, [](const std::expected<SelectionReplacer::Outcome, KeyEventError>& outcome) {
          const bool isTyped = outcome == SelectionReplacer::Outcome::typed;
          tell({{u"outcome"_s, !outcome ? outcome.error().description() : isTyped ? u"typed"_s : u"copied"_s}});
        });
  }

  void restore() {
    replacer_.restore(selection_);
    tell({{u"restored"_s, true}});
  }

  static void tell(const QJsonObject& answer) {
    std::cout << QJsonDocument(answer).toJson(QJsonDocument::Compact).constData() << std::endl;
  }

  Platform platform_ = makePlatform();
  SystemClock clock_;
  KeystrokeSender keys_{*platform_.keyEvents, *platform_.permissions};
  DisplacedClipboard displaced_{{*platform_.pasteboard, clock_}};
  CopyingSelectionReader reader_{
      {*platform_.keyTargets, *platform_.selectedText, *platform_.pasteboard, displaced_, keys_, clock_}};
  TypingSelectionReplacer replacer_{
      {*platform_.keyTargets, *platform_.selectedText, *platform_.pasteboard, displaced_, keys_, clock_}};
  Job job_;
  Selection selection_;
};

}  // namespace

int main(int argc, char** argv) {
  QGuiApplication app(argc, argv);
  Probe probe;
  QSocketNotifier orders(0, QSocketNotifier::Read);
  QObject::connect(&orders, &QSocketNotifier::activated, &app, [&probe] { probe.takeOrder(); });
  return QGuiApplication::exec();
}
