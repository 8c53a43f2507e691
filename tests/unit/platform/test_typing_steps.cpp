#include <QtTest>

#include "platform/typing_steps.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// All text of the steps, a '|' for each step that is not text.
QString typed(const KeySequence& steps) {
  QString all;
  for (const TypingStep& step : typingSteps(steps)) {
    const auto* text = std::get_if<std::u32string>(&step);
    all += text ? QString::fromUcs4(text->data(), static_cast<qsizetype>(text->size())) : u"|"_s;
  }
  return all;
}

const QString kHigh(QChar(0xd83d));
const QString kLow(QChar(0xde42));

}  // namespace

class TypingStepsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aPairCutBetweenChunksIsOneCharacter() {
    QCOMPARE(typed({TypeText{u"a"_s + kHigh}, Pause{3ms}, TypeText{kLow + u"b"_s}}), u"a|🙂b"_s);
  }

  void loneHalvesAreLeftOut() {
    QCOMPARE(typed({TypeText{kHigh + u"a"_s + kLow + kHigh + kHigh + kLow + u"b"_s + kHigh}}), u"a🙂b"_s);
    QCOMPARE(typed({TypeText{kHigh}, PressKey{36, 0}, TypeText{kLow + u"a"_s}}), u"|a"_s);
  }

  void everyLineEndIsOneReturn() {
    QCOMPARE(typed({TypeText{u"a\r\nb\rc\nd\n\r\n"_s}}), u"a\nb\nc\nd\n\n"_s);
    QCOMPARE(typed({TypeText{u"a\r"_s}, Pause{3ms}, TypeText{u"\nb"_s}}), u"a\n|b"_s);
  }

  void controlCharactersHaveNoKeyButTabHas() {
    QCOMPARE(typed({TypeText{u"a\x1b[0m\x7f\tb\u0085"_s + QChar(0) + u"c"_s}}), u"a[0m\tbc"_s);
  }
};

QTEST_APPLESS_MAIN(TypingStepsTest)
#include "test_typing_steps.moc"
