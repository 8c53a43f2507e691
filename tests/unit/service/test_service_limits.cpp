#include <QtTest>

#include "service/accounts/rate_limiter.h"
#include "service/accounts/secret.h"
#include "service/accounts/token_gate.h"
#include "service/accounts/token_store.h"
#include "unit/service/service_store.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TestServiceLimits : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aRateIsKeptByKey() {
    RateLimiter limiter(2, 10);
    RateLimiter::Time now{};
    const auto burst = [&](const QByteArray& key) {
      int admitted = 0;
      while (limiter.admits(key, now)) ++admitted;
      return admitted;
    };
    QCOMPARE(burst("a"), 10);
    QVERIFY(!limiter.admits("a", now, false));
    now += 3s;
    QVERIFY(limiter.admits("a", now, false));
    QCOMPARE(burst("a"), 6);
    QCOMPARE(burst("b"), 10);
    now += 1h;
    QCOMPARE(burst("a"), 10);
  }

  void noRateIsNoLimit() {
    RateLimiter limiter(0, 0);
    for (int i = 0; i < 1000; ++i) QVERIFY(limiter.admits("a", {}));
  }

  void guessingIsSlow() {
    ServiceStore store;
    const QByteArray secret = makeSecret();
    QVERIFY(tokens::add(store.connection(), {.name = u"alice"_s, .plan = u"free"_s}, secret));
    TokenGate gate(store.database, {}, {}, {});
    const auto ask = [&](const QByteArray& address, const QByteArray& credential) {
      const Request request{
          .method = "GET", .path = "/", .headers = {{"authorization", "Bearer " + credential}}, .address = address};
      const auto admitted = gate.admit(request, Endpoint::Access::person);
      return admitted ? 200 : admitted.error().status;
    };
    int refused = 0;
    while (ask("1.1.1.1", makeSecret()) == 401) QVERIFY(++refused < 50);
    // Even the right one is not told from a wrong one any more, there.
    QCOMPARE(ask("1.1.1.1", secret), 429);
    QCOMPARE(ask("2.2.2.2", secret), 200);
  }
};

QTEST_GUILESS_MAIN(TestServiceLimits)
#include "test_service_limits.moc"
