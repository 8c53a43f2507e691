#include <QTest>

#include "support/fake_clock.h"
#include "support/fake_platform.h"
#include "tools/asking/ask_conversation.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// The test answers.
struct Conversation {
  void submit(const QString& question) {
    model.setQuestion(question);
    flow.submit();
  }
  void answer(const QString& text) { calls.back().done(text); }
  void fail(const QString& text) { calls.back().done(std::unexpected(AskError::told(text))); }

  AskModel model;
  FakePasteboard pasteboard;
  FakeClock clock;
  std::vector<AskQuestion> asked;
  std::vector<AskCall> calls;
  AskConversation flow{model, {pasteboard, clock}, [this](const AskQuestion& question, const AskCall& call) {
                         asked.push_back(question);
                         calls.push_back(call);
                       }};
};

}  // namespace

class TestAskConversation : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aConversationRemembersWhatWasSaid() {
    Conversation talk;
    talk.submit(u" \n\t"_s);
    QVERIFY(talk.asked.empty());
    talk.submit(u"  One?\n"_s);
    QCOMPARE(talk.asked.at(0).text, u"One?"_s);
    QVERIFY(talk.asked[0].history.empty());
    QCOMPARE(talk.model.question(), QString());
    QCOMPARE(talk.model.pending(), u"One?"_s);
    // One question at a time.
    talk.submit(u"Two?"_s);
    QCOMPARE(talk.asked.size(), 1U);
    talk.answer(u"1"_s);
    QVERIFY(!talk.model.pending());
    QCOMPARE(talk.model.question(), u"Two?"_s);
    talk.flow.submit();
    QVERIFY((talk.asked.at(1).history == std::vector<AskExchange>{{u"One?"_s, u"1"_s}}));
  }

  void aFailedQuestionReturnsToTheFieldWithWhatHadArrived() {
    Conversation talk;
    talk.submit(u"One?"_s);
    talk.answer(u"1"_s);
    talk.submit(u"Two?"_s);
    talk.calls.back().grew(u"Tw"_s);
    QCOMPARE(talk.model.partialAnswer(), u"Tw"_s);
    talk.fail(u"Oops"_s);
    QCOMPARE(talk.model.errorMessage(), u"Oops"_s);
    QCOMPARE(talk.model.question(), u"Two?"_s);
    QCOMPARE(talk.model.exchanges().size(), 1U);
    QCOMPARE(talk.model.brokenOff()->answer, u"Tw"_s);
    talk.flow.submit();
    QVERIFY(!talk.model.errorMessage() && !talk.model.brokenOff());
    QCOMPARE(talk.asked.back().history.size(), 1U);
    // What has been typed meanwhile stays.
    talk.model.setQuestion(u"Three"_s);
    talk.fail({});
    QCOMPARE(talk.model.question(), u"Three"_s);
    QCOMPARE(talk.model.lastQuestion(), u"Two?"_s);
  }

  void nothingArrivesAfterACancelOrANewStart() {
    Conversation talk;
    talk.submit(u"One?"_s);
    talk.calls.back().grew(u"O"_s);
    talk.flow.cancel();
    QVERIFY(!talk.model.pending() && !talk.calls.back().job.isRunning());
    QCOMPARE(talk.model.question(), u"One?"_s);
    QCOMPARE(talk.model.partialAnswer(), QString());
    talk.calls.back().grew(u"On"_s);
    talk.answer(u"1"_s);
    QVERIFY(talk.model.exchanges().empty() && talk.model.partialAnswer().isEmpty());

    talk.flow.submit();
    talk.flow.startOver();
    talk.answer(u"1"_s);
    QVERIFY(talk.model.exchanges().empty() && talk.model.question().isEmpty() && !talk.model.pending());
  }

  void theLatestAnswerIsCopiedAndThatIsSaidForAWhile() {
    Conversation talk;
    QVERIFY(!talk.flow.copyLatestAnswer());
    QVERIFY(talk.pasteboard.texts.isEmpty());
    for (const QString& answer : {u"1"_s, u"2"_s}) {
      talk.submit(u"?"_s);
      talk.answer(answer);
    }
    QVERIFY(talk.flow.copyLatestAnswer());
    QCOMPARE(talk.pasteboard.texts, QStringList(u"2"_s));
    QVERIFY(talk.model.copied());
    talk.clock.advance(1400ms);
    QVERIFY(talk.flow.copyLatestAnswer());
    talk.clock.advance(1400ms);
    QVERIFY(talk.model.copied());
    talk.clock.advance(100ms);
    QVERIFY(!talk.model.copied());
  }
};

QTEST_GUILESS_MAIN(TestAskConversation)
#include "test_ask_conversation.moc"
