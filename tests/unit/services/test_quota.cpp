#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>

#include "support/service_world.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QJsonObject json(const char* text) { return QJsonDocument::fromJson(text).object(); }

HttpResponse answer(HttpHeaders headers) { return {200, std::move(headers), {}}; }

/// A refresh under way, and how it ended.
struct Refresh {
  explicit Refresh(ServiceWorld& world) {
    world.services.quotaClient.refresh(job, [this](const auto& result) { done = result; });
    // The way to the request leads through the keychain, which answers later.
    for (int turn = 0; turn < 5; ++turn) QCoreApplication::processEvents();
  }
  Job job = Job::start();
  std::optional<std::expected<void, ServiceError>> done;
};

}  // namespace

class TestQuota : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void headersOfAMeteredResponseAreRecorded() {
    FakeClock clock;
    QuotaStore store(clock);
    QVERIFY(store.plan().isEmpty() && store.metrics().empty() && !store.lastUpdated());
    QSignalSpy changes(&store, &QuotaStore::changed);
    store.record(answer({{"x-quota-limit", "100"}, {"X-QUOTA-REMAINING", "+97"}, {"X-Quota-Reset", "2026-12-01"}}),
                 u"text"_s);
    QCOMPARE(store.metrics().at(u"text"_s), (MetricUsage{3, 100}));
    QCOMPARE(store.resetsAt(), u"2026-12-01"_s);
    QCOMPARE(store.lastUpdated(), clock.now());
    QCOMPARE(changes.size(), 1);
  }

  void largeNumbersAreNumbersAndHostileOnesNone() {
    FakeClock clock;
    QuotaStore store(clock);
    store.record(answer({{"X-Quota-Limit", "5000000000"}, {"X-Quota-Remaining", "-1"}}), u"text"_s);
    QCOMPARE(store.metrics().at(u"text"_s), (MetricUsage{5'000'000'001, 5'000'000'000}));
    store.record(answer({{"X-Quota-Limit", "-9223372036854775807"}, {"X-Quota-Remaining", "9"}}), u"answers"_s);
    store.record(answer({{"X-Quota-Limit", "9"}, {"X-Quota-Remaining", "99999999999999999999"}}), u"answers"_s);
    store.apply(json(R"({"usage": {"answers": {"used": -1e300, "limit": 5}, "text": {"used": 1, "limit": 6000000000},
                        "image_answers": {"used": 1.5, "limit": 5}}})"));
    QCOMPARE(store.metrics(), (std::map<QString, MetricUsage>{{u"text"_s, {1, 6'000'000'000}}}));
  }

  void unreadableHeadersChangeNothing() {
    FakeClock clock;
    QuotaStore store(clock);
    const QList<HttpHeaders> unreadable = {
        {},
        {{"X-Quota-Limit", "100"}},
        {{"X-Quota-Limit", "100"}, {"X-Quota-Remaining", "9.5"}, {"X-Quota-Reset", "soon"}},
        {{"X-Quota-Limit", "0x10"}, {"X-Quota-Remaining", "9"}}};
    for (const HttpHeaders& headers : unreadable) store.record(answer(headers), u"text"_s);
    QVERIFY(store.metrics().empty() && store.resetsAt().isEmpty() && !store.lastUpdated());
  }

  void aQuotaResponseKeepsWhatItDoesNotName() {
    FakeClock clock;
    QuotaStore store(clock);
    store.apply(json(R"({"plan": "free", "resetsAt": "a", "usage": {"text": {"used": 1, "limit": 20},
                        "answers": {"used": 2}, "image_answers": {"used": "3", "limit": 5}, "x": 7}})"));
    QCOMPARE(store.metrics(), (std::map<QString, MetricUsage>{{u"text"_s, {1, 20}}}));
    clock.advance(1min);
    store.apply(json(R"({"plan": "paid", "resetsAt": 5})"));
    QCOMPARE(store.plan(), u"paid"_s);
    QCOMPARE(store.resetsAt(), u"a"_s);
    QCOMPARE(store.metrics().size(), std::size_t{1});
    QCOMPARE(store.lastUpdated(), clock.now());
  }

  void withoutACredentialThereIsNoRequest() {
    ServiceWorld world;
    world.useOwnHosts();
    world.vault.secrets.clear();
    const Refresh refresh(world);
    QVERIFY(refresh.done && !*refresh.done);
    QVERIFY(world.http.sent.empty());
    world.vault.error = CredentialError{CredentialError::Reason::denied, {}};
    world.services.credential.remove(refresh.job, [](const auto&) {});
    const Refresh locked(world);
    QCOMPARE(locked.done->error().description(), world.vault.error->description());
  }

  void refreshAsksTheServiceAndApplies() {
    ServiceWorld world;
    world.useOwnHosts();
    const Refresh refresh(world);
    const HttpRequest& request = world.http.sent.at(0);
    QCOMPARE(request.method, "GET");
    QCOMPARE(request.url, QUrl(u"https://api.example/v1/quota"_s));
    QCOMPARE(request.headers, (HttpHeaders{{"Authorization", "Bearer secret"}}));
    QCOMPARE(request.deadline, 20s);
    QVERIFY(!refresh.done);
    world.http.answer(200, R"({"plan": "paid"})");
    QVERIFY(*refresh.done);
    QCOMPARE(world.services.quota.plan(), u"paid"_s);
  }

  void theBuiltInServiceTakesTheTokenItWasStartedWith() {
    ServiceWorld world;
    world.vault.secrets[u"api"_s] = "secret";
    const Refresh refresh(world);
    QCOMPARE(world.builtIn.starts, 1);
    QCOMPARE(world.vault.reads, 0);
    QCOMPARE(world.http.sent.at(0).headers, (HttpHeaders{{"Authorization", "Bearer embedded"}}));
  }

  void failuresLeaveTheStoreAsItWas() {
    ServiceWorld world;
    world.useOwnHosts();
    QStringList texts;
    const auto fail = [&](const std::expected<HttpResponse, HttpError>& response) {
      const Refresh refresh(world);
      QVERIFY(world.http.answer(response) && refresh.done && !*refresh.done);
      texts.append(refresh.done->error().description());
    };
    fail(HttpResponse{500, {}, "oops"});
    fail(HttpResponse{404, {}, {}});
    fail(HttpResponse{401, {}, "no"});
    fail(HttpResponse{201, {}, QByteArray("é").repeated(200)});
    fail(HttpResponse{200, {}, "[1]"});
    fail(std::unexpected(HttpError{HttpError::Reason::unreachable, u"Connection refused"_s}));
    QCOMPARE(texts, (QStringList{u"Request failed (HTTP 500) oops"_s, u"Request failed (HTTP 404) "_s,
                                 u"The service does not accept the credential (HTTP 401)."_s,
                                 u"Request failed (HTTP 201) "_s + QString(80, u'é'),
                                 u"What answers there is not Vantle's service."_s,
                                 u"The service cannot be reached: Connection refused"_s}));
    QVERIFY(!world.services.quota.lastUpdated());
  }

  void theEndOfTheJobIsTheEndOfIt() {
    ServiceWorld world;
    world.useOwnHosts();
    Refresh refresh(world);
    refresh.job.cancel();
    world.http.answer(200, R"({"plan": "paid"})");
    QVERIFY(!refresh.done && world.services.quota.plan().isEmpty());
  }
};

QTEST_GUILESS_MAIN(TestQuota)
#include "test_quota.moc"
