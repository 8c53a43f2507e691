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
  void everyTileIsReadableAndDistinct() {
    auto icons = CommandIcon::all();
    icons.push_back(CommandIcon::terminal());
    QCOMPARE(icons.size(), 58U);
    QSet<QString> ids;
    QSet<QString> monograms;
    for (const CommandIcon& icon : icons) {
      QVERIFY2(contrastWithWhite(icon.color) >= 4.5, qPrintable(icon.id));
      ids.insert(icon.id);
      monograms.insert(icon.monogram);
    }
    QCOMPARE(ids.size(), 58);
    QCOMPARE(monograms.size(), 58);
  }

  void favouritesComeFirstThenNamesInOrder() {
    QStringList ids;
    for (const CommandIcon& icon : CommandIcon::all()) ids.append(icon.id);
    QCOMPARE(ids.first(2), QStringList({u"claude"_s, u"codex"_s}));
    // Upper case does not sort before lower case: "vLLM" stands between "Vercel" and "Zhipu".
    QCOMPARE(ids.sliced(8, 3), QStringList({u"ai21"_s, u"anthropic"_s, u"aws"_s}));
    QCOMPARE(ids.last(3), QStringList({u"vercel"_s, u"vllm"_s, u"zhipu"_s}));
  }

  void findFallsBackToTerminal() {
    QCOMPARE(CommandIcon::find(u"nvidia"_s).name, u"NVIDIA"_s);
    QCOMPARE(CommandIcon::find(u"NVIDIA"_s), CommandIcon::terminal());
    QCOMPARE(CommandIcon::find(std::nullopt), CommandIcon::terminal());
  }

  void inferenceNeedsWholeWords() {
    for (const auto& [command, icon] : {
             std::pair{u"claude --continue"_s, "claude"_L1},
             {u"GEMINI -p hi"_s, "gemini"_L1},
             {u"npx claude-code"_s, "claude"_L1},
             {u"/opt/ollama/bin/run"_s, "ollama"_L1},
             {u"claudette"_s, "terminal"_L1},
             {u"codex2"_s, "terminal"_L1},
             {u"claude\u0301"_s, "terminal"_L1},
             {u"aws codex"_s, "codex"_L1},  // a favourite before an earlier word
             {u"terminal zhipu"_s, "zhipu"_L1},
             {QString(), "terminal"_L1},
         })
      QCOMPARE(CommandIcon::infer(command), icon);
  }
};

QTEST_GUILESS_MAIN(CommandIconTest)
#include "test_command_icon.moc"
