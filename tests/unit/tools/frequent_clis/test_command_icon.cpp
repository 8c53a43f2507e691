#include "tools/frequent_clis/command_icon.h"

#include <QSet>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

double linear(double channel) {
  return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

/// WCAG contrast of white text on `color`.
double contrastWithWhite(const QColor& color) {
  const double luminance =
      0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
  return 1.05 / (luminance + 0.05);
}

}  // namespace

class CommandIconTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void everyTileIsReadableAndDistinct();
  void favouritesComeFirstThenNamesInOrder();
  void findFallsBackToTerminal();
  void inferenceNeedsWholeWords_data();
  void inferenceNeedsWholeWords();
};

void CommandIconTest::everyTileIsReadableAndDistinct() {
  auto icons = CommandIcon::all();
  icons.push_back(CommandIcon::terminal());
  QCOMPARE(icons.size(), 58U);
  QSet<QString> ids;
  QSet<QString> monograms;
  for (const CommandIcon& icon : icons) {
    QVERIFY2(contrastWithWhite(icon.color) >= 4.5, qPrintable(icon.id));
    QCOMPARE(icon.color.alpha(), 255);
    QCOMPARE(icon.id, icon.id.toLower());
    ids.insert(icon.id);
    monograms.insert(icon.monogram);
  }
  QCOMPARE(ids.size(), 58);
  QCOMPARE(monograms.size(), 58);
}

void CommandIconTest::favouritesComeFirstThenNamesInOrder() {
  QStringList ids;
  for (const CommandIcon& icon : CommandIcon::all()) ids.append(icon.id);
  QCOMPARE(ids.first(8), QStringList({u"claude"_s, u"codex"_s, u"gemini"_s, u"copilot"_s, u"cursor"_s, u"windsurf"_s,
                                      u"grok"_s, u"ollama"_s}));
  // Upper case does not sort before lower case: "vLLM" stands between "Vercel" and "Zhipu".
  QCOMPARE(ids.sliced(8, 3), QStringList({u"ai21"_s, u"anthropic"_s, u"aws"_s}));
  QCOMPARE(ids.last(3), QStringList({u"vercel"_s, u"vllm"_s, u"zhipu"_s}));
}

void CommandIconTest::findFallsBackToTerminal() {
  QCOMPARE(CommandIcon::find(u"nvidia"_s).name, u"NVIDIA"_s);
  QCOMPARE(CommandIcon::find(u"NVIDIA"_s), CommandIcon::terminal());
  QCOMPARE(CommandIcon::find(std::nullopt), CommandIcon::terminal());
  QCOMPARE(CommandIcon::terminal().color.rgb(), qRgb(41, 48, 64));
}

void CommandIconTest::inferenceNeedsWholeWords_data() {
  QTest::addColumn<QString>("command");
  QTest::addColumn<QString>("icon");
  QTest::newRow("plain") << u"claude --continue"_s << u"claude"_s;
  QTest::newRow("case") << u"GEMINI -p hi"_s << u"gemini"_s;
  QTest::newRow("joined by a hyphen") << u"npx claude-code"_s << u"claude"_s;
  QTest::newRow("path") << u"/opt/ollama/bin/run"_s << u"ollama"_s;
  QTest::newRow("longer word") << u"claudette"_s << u"terminal"_s;
  QTest::newRow("digits belong to the word") << u"codex2"_s << u"terminal"_s;
  QTest::newRow("accent belongs to the letter") << u"claude\u0301"_s << u"terminal"_s;
  QTest::newRow("favourite before an earlier word") << u"aws codex"_s << u"codex"_s;
  QTest::newRow("terminal is no word") << u"terminal zhipu"_s << u"zhipu"_s;
  QTest::newRow("nothing") << u"ls -la"_s << u"terminal"_s;
  QTest::newRow("empty") << QString() << u"terminal"_s;
}

void CommandIconTest::inferenceNeedsWholeWords() {
  QFETCH(const QString, command);
  QTEST(CommandIcon::infer(command), "icon");
}

QTEST_GUILESS_MAIN(CommandIconTest)
#include "test_command_icon.moc"
