#include <QAccessible>
#include <QPushButton>
#include <QTest>

#include "app/usage/meter_view.h"
#include "app/usage/plan_badge.h"
#include "app/usage/usage_window.h"
#include "support/controls.h"
#include "support/service_world.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kAnswer = R"({"plan": "free", "usage": {
  "text": {"used": 250, "limit": 250}, "answers": {"used": 3, "limit": 100},
  "image_answers": {"used": 12, "limit": 40}, "image_generate": {"used": 0, "limit": 20}}})";

struct Stage : ServiceWorld {
  Stage() { useOwnHosts(); }
  void open() {
    window.open();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
  }
  void answer(int status, const QByteArray& body) {
    QTRY_VERIFY(!http.waiting.empty());
    http.answer(status, body);
  }
  QStringList texts() const { return shownTexts(window); }

  UsageWindow window{services.quota, services.quotaClient};
};

}  // namespace

class TestUsageWindow : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void showsAMeterForEachCounter() {
    Stage stage;
    stage.open();
    QCOMPARE(stage.window.windowTitle(), u"Usage"_s);
    QCOMPARE(stage.window.size(), QSize(440, 440));
    QVERIFY(stage.texts().contains(u"Loading your usage…"_s));
    stage.answer(200, kAnswer);
    const QStringList texts = stage.texts();
    for (const QString& text : {u"This month · free plan"_s, u"3 of 100"_s, u"97 left this month"_s,
                                u"None left this month"_s, u"Resets at the start of next month"_s})
      QVERIFY2(texts.contains(text), qPrintable(text));
    QVERIFY(texts.indexOf(u"Answers"_s) < texts.indexOf(u"Text"_s));
    QVERIFY(!texts.contains(u"Loading your usage…"_s));

    auto* bar = stage.window.findChild<MeterBar*>();
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(bar);
    QCOMPARE(accessible->role(), QAccessible::ProgressBar);
    QCOMPARE(accessible->text(QAccessible::Name), u"Answers"_s);
    QCOMPARE(accessible->valueInterface()->currentValue().toInt(), 3);
    QCOMPARE(accessible->valueInterface()->maximumValue().toInt(), 100);
    QCOMPARE(unnamedControls(stage.window), QStringList());
  }

  void saysWhenNothingIsKnown() {
    Stage stage;
    stage.open();
    stage.answer(500, {});
    QVERIFY(stage.texts().contains(u"No usage loaded yet."_s));
    QVERIFY(stage.texts().contains(u"This month"_s));
    QVERIFY(!stage.window.findChild<PlanBadge*>()->isVisible());
  }

  void isRefreshedByItsButtonAndWheneverItIsOpened() {
    Stage stage;
    stage.open();
    stage.answer(200, kAnswer);
    auto* refresh = named<QPushButton>(stage.window, u"Refresh"_s);
    QVERIFY(refresh && refresh->hasFocus());
    QTest::keyClick(refresh, Qt::Key_Space);
    stage.answer(200, R"({"usage": {"answers": {"used": 4, "limit": 100}}})");
    QVERIFY(stage.texts().contains(u"4 of 100"_s));
    QTest::keyClick(&stage.window, Qt::Key_Escape);
    QVERIFY(!stage.window.isVisible());
    stage.open();
    // A counter that this version does not know, with a name that nobody bounded.
    stage.answer(200, "{\"usage\": {\"" + QByteArray(500, 'x') + "\": {\"used\": 1, \"limit\": 2}}}");
    QVERIFY(stage.texts().contains(u"1 of 2"_s));
    QCOMPARE(stage.window.size(), QSize(440, 440));
  }
};

QTEST_MAIN(TestUsageWindow)
#include "test_usage_window.moc"
