#include "app/usage/usage_window_controller.h"

#include <QLocale>
#include <QSignalSpy>
#include <QTest>

#include "support/service_world.h"

using namespace Qt::StringLiterals;

using State = UsageWindowController::State;

namespace {

constexpr auto kAnswer = R"({"plan": "paid", "usage": {"answers": {"used": 3, "limit": 100}}})";

struct Usage : ServiceWorld {
  Usage() { useOwnHosts(); }
  /// Lets the requests go out that are due.
  bool hasSent(std::size_t count) {
    return QTest::qWaitFor([this, count] { return http.waiting.size() == count; });
  }
  bool answer(int status, const QByteArray& body) { return hasSent(1) && http.answer(status, body); }

  UsageWindowController controller{services.quota, services.quotaClient};
};

}  // namespace

class UsageWindowControllerTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { QLocale::setDefault(QLocale::c()); }

  void metersStandInTheirOrderAndNewOnesBehind() {
    const auto meters = usageMeters({{u"zzz"_s, {}},
                                     {u"image_generate"_s, {}},
                                     {u"answers"_s, {}},
                                     {u"a_new"_s, {}},
                                     {u"text"_s, {}},
                                     {u"image_answers"_s, {}}});
    QStringList labels;
    for (const UsageMeter& meter : meters) labels.append(meter.label);
    QCOMPARE(labels,
             (QStringList{u"Answers"_s, u"Text"_s, u"Image answers"_s, u"Image generation"_s, u"a_new"_s, u"zzz"_s}));
  }

  void whatIsLeft_data() {
    QTest::addColumn<qint64>("used");
    QTest::addColumn<qint64>("limit");
    QTest::addColumn<double>("fraction");
    QTest::addColumn<QString>("remaining");
    const QString none = u"None left this month"_s;
    QTest::newRow("some") << qint64{3} << qint64{100} << 0.03 << u"97 left this month"_s;
    QTest::newRow("one") << qint64{99} << qint64{100} << 0.99 << u"1 left this month"_s;
    QTest::newRow("none") << qint64{100} << qint64{100} << 1.0 << none;
    QTest::newRow("more than allowed") << qint64{130} << qint64{100} << 1.0 << none;
    QTest::newRow("nothing allowed") << qint64{0} << qint64{0} << 1.0 << none;
    QTest::newRow("credited") << qint64{-5} << qint64{100} << 0.0 << u"105 left this month"_s;
    QTest::newRow("absurd") << qint64{-4'000'000'000} << qint64{4'000'000'000} << 0.0
                            << u"8000000000 left this month"_s;
  }
  void whatIsLeft() {
    QFETCH(const qint64, used);
    QFETCH(const qint64, limit);
    const UsageMeter meter{u"text"_s, u"Text"_s, {used, limit}};
    QTEST(meter.fraction(), "fraction");
    QTEST(meter.remaining(), "remaining");
    QCOMPARE(meter.counts(), u"%1 of %2"_s.arg(used).arg(limit));
  }

  void theFirstRefreshLoadsAndThenItIsKnown() {
    Usage usage;
    QSignalSpy changed(&usage.controller, &UsageWindowController::changed);
    QCOMPARE(usage.controller.state(), State::unknown);
    usage.controller.refresh();
    QCOMPARE(usage.controller.state(), State::loading);
    QVERIFY(usage.answer(200, kAnswer));
    QCOMPARE(usage.controller.state(), State::known);
    QVERIFY(changed.size() >= 2);
    QVERIFY(usage.controller.isPaid());
    QCOMPARE(usage.controller.meters().front().counts(), u"3 of 100"_s);
    // What is known stays in view while it is fetched anew, and when that fails.
    usage.controller.refresh();
    QCOMPARE(usage.controller.state(), State::known);
    QVERIFY(usage.answer(500, "down"));
    QCOMPARE(usage.controller.meters().front().counts(), u"3 of 100"_s);
  }

  void aRefreshThatFailsLeavesNothingLoaded() {
    Usage usage;
    usage.controller.refresh();
    QVERIFY(usage.answer(503, {}));
    QCOMPARE(usage.controller.state(), State::unknown);
  }

  void withoutACredentialNothingIsLoaded() {
    Usage usage;
    usage.vault.secrets.clear();
    usage.controller.refresh();
    QCOMPARE(usage.controller.state(), State::loading);
    QTRY_COMPARE(usage.controller.state(), State::unknown);
    QVERIFY(usage.http.sent.empty());
  }

  void aSecondRefreshTakesTheFirstOnesPlace() {
    Usage usage;
    usage.controller.refresh();
    QVERIFY(usage.hasSent(1));
    usage.controller.refresh();
    QVERIFY(usage.hasSent(2));
    QVERIFY(usage.http.answer(503, {}));
    QCOMPARE(usage.controller.state(), State::loading);
    QVERIFY(usage.http.answer(200, kAnswer));
    QCOMPARE(usage.controller.state(), State::known);
  }
};

QTEST_GUILESS_MAIN(UsageWindowControllerTest)
#include "usage_window_controller_test.moc"
