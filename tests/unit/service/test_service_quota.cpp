#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include "service/accounts/plan_store.h"
#include "service/accounts/quota.h"
#include "unit/service/service_store.h"

using namespace Qt::StringLiterals;

namespace {

const Caller kCaller{Caller::Kind::person, u"token:1"_s, u"alice"_s, u"small"_s};
const QString kMetric = u"answers"_s;

struct World : ServiceStore {
  Quota quota{database, writes};
  QDateTime now{QDate(2026, 11, 30), QTime(23, 59), Qt::UTC};

  World() { std::ignore = plans::set(connection(), {u"small"_s, {{kMetric, 2}, {u"text"_s, std::nullopt}}}); }

  auto reserve(const QString& metric = kMetric) { return quota.reserve(kCaller, metric, now); }
  qint64 used() {
    const auto standings = quota.standings(kCaller, now);
    const auto found = std::ranges::find(*standings, kMetric, &Standing::metric);
    return found->used;
  }
};

QByteArray header(const Response& response, const QByteArray& name) {
  for (const auto& [known, value] : response.headers)
    if (known == name) return value;
  return {};
}

}  // namespace

class TestServiceQuota : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void whatFailsIsNotCounted() {
    World world;
    {
      const auto failed = world.reserve();
    }
    QCOMPARE(world.used(), 0);
    auto done = world.reserve();
    QCOMPARE(done->commit()->used, 1);
    QCOMPARE(world.used(), 1);
  }

  void whatIsUnderWayIsHeldBack() {
    World world;
    auto first = world.reserve();
    {
      const auto second = world.reserve();
      QVERIFY(second && !world.reserve());
    }
    QVERIFY(first->commit());
    auto third = world.reserve();
    QVERIFY(third->commit());
    const auto refused = world.reserve();
    QCOMPARE(std::get<Standing>(refused.error()).used, 2);
  }

  void aNewMonthBegins() {
    World world;
    for (int i = 0; i < 2; ++i) QVERIFY(world.reserve()->commit());
    QVERIFY(!world.reserve());
    QCOMPARE(Quota::nextReset(world.now).toString(Qt::ISODate), u"2026-12-01T00:00:00Z"_s);
    world.now = world.now.addSecs(60);
    QCOMPARE(world.used(), 0);
    QVERIFY(world.reserve());
    QCOMPARE(Quota::nextReset(world.now).toString(Qt::ISODate), u"2027-01-01T00:00:00Z"_s);
  }

  void whatNobodyEverEndsIsForgotten() {
    World world;
    QVERIFY(world.connection().run(
        u"INSERT INTO quota_reserved VALUES ('a', 'token:1', '2026-11', 'answers', ?), ('b', 'token:1', '2026-11', 'answers', ?)"_s,
        {world.now.toSecsSinceEpoch() + 5, world.now.toSecsSinceEpoch() + 50}));
    QVERIFY(!world.reserve());
    world.now = world.now.addSecs(10);
    QVERIFY(world.reserve());
  }

  void plansAllowNothingEndlesslyOrSomeOfIt() {
    World world;
    const auto refused = world.reserve(u"image_generate"_s);
    QCOMPARE(std::get<Standing>(refused.error()).limit, 0);
    for (int i = 0; i < 5; ++i) QVERIFY(world.reserve(u"text"_s)->commit());
    Response response;
    world.reserve(u"text"_s)->standing().describe(response);
    QVERIFY(response.headers.isEmpty());
  }

  void answersSayHowMuchIsLeft() {
    World world;
    Response response;
    world.reserve()->commit()->describe(response);
    QCOMPARE(header(response, "X-Quota-Limit"), "2"_ba);
    QCOMPARE(header(response, "X-Quota-Remaining"), "1"_ba);
    QCOMPARE(header(response, "X-Quota-Reset"), "2026-12-01T00:00:00Z"_ba);
    QVERIFY(world.reserve()->commit());
    const Response refusal = std::get<Standing>(world.reserve().error()).refusal();
    QCOMPARE(refusal.status, 402);
    QCOMPARE(header(refusal, "X-Quota-Remaining"), "0"_ba);
    const QJsonObject expected{{u"metric"_s, kMetric},
                               {u"plan"_s, u"small"_s},
                               {u"limit"_s, 2},
                               {u"used"_s, 2},
                               {u"resetsAt"_s, u"2026-12-01T00:00:00Z"_s}};
    QCOMPARE(QJsonDocument::fromJson(refusal.body).object(), expected);
  }

  void manyAtOnceNeverExceedIt() {
    World world;
    QVERIFY(plans::set(world.connection(), {u"small"_s, {{kMetric, 20}}}));
    std::atomic<int> done = 0;
    {
      std::vector<std::jthread> threads;
      for (int i = 0; i < 8; ++i)
        threads.emplace_back([&] {
          for (int turn = 0; turn < 10; ++turn)
            if (auto reservation = world.reserve(); reservation && reservation->commit()) ++done;
        });
    }
    QCOMPARE(world.used(), done.load());
    QVERIFY(done <= 20);
    while (auto reservation = world.reserve()) QVERIFY(reservation->commit());
    QCOMPARE(world.used(), 20);
  }
};

QTEST_GUILESS_MAIN(TestServiceQuota)
#include "test_service_quota.moc"
