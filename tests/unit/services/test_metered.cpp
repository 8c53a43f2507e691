#include <QTest>

#include "services/metered_answer.h"
#include "services/uplink_error.h"
#include "support/fake_clock.h"

using namespace Qt::StringLiterals;

namespace {

/// Written with single quotes: moc 6.4 loses its way in raw strings.
QByteArray json(QByteArray text) { return text.replace('\'', '"'); }

}  // namespace

class TestMetered : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aRefusalIsReadFromAWellFormedBody() {
    const auto whole = quotaError(
        json("{'metric':'image_generate','plan':'Pro','used':51,'limit':50,'resetsAt':'2026-12-01T12:00:00.000Z'}"));
    QVERIFY(whole);
    QCOMPARE(*whole, (QuotaExceededError{u"image_generate"_s, u"Pro"_s, 51, 50, u"2026-12-01T12:00:00.000Z"_s}));
    QLocale::setDefault(QLocale::c());
    QCOMPARE(whole->description(), u"You've used all 50 image generations this month on the Pro plan. Resets Dec 1."_s);

    const auto bare = quotaError(json("{'metric':'text','plan':'Free','limit':20,'used':'all','resetsAt':7}"));
    QVERIFY(bare);
    QCOMPARE(*bare, (QuotaExceededError{u"text"_s, u"Free"_s, 20, 20, {}}));
    QVERIFY(bare->description().endsWith(u"Resets next month."_s));
    QCOMPARE(metricLabel(u"videos"_s), u"videos"_s);

    for (const char* body :
         {"", "[]", "{'metric':'text','plan':'Free'}", "{'metric':1,'plan':'Free','limit':2}",
          "{'metric':'text','plan':'Free','limit':2.5}", "{'error':{'metric':'text','plan':'Free','limit':2}}"})
      QVERIFY2(!quotaError(json(body)), body);
  }

  void theResetIsADayInTheUsersZone() {
    const QTimeZone zone(-8 * 3600);
    for (const QString& text :
         {u"2026-12-01T00:00:00.000Z"_s, u"2026-12-01T00:00:00Z"_s, u"2026-12-01T02:00:00+02:00"_s})
      QCOMPARE(resetLabel(text, QLocale::c(), zone), u"Nov 30"_s);
    for (const QString& text :
         {QString(), u"soon"_s, u"2026-12-01"_s, u"2026-12-01T00:00:00"_s, u"2026-13-01T00:00:00Z"_s})
      QCOMPARE(resetLabel(text, QLocale::c(), zone), u"next month"_s);
  }

  void countersAreTakenBeforeTheStatusIsJudged() {
    FakeClock clock;
    QuotaStore quota(clock);
    const HttpHeaders headers{{"X-Quota-Limit", "20"}, {"X-Quota-Remaining", "0"}};
    const auto refused =
        meteredAnswer(HttpResponse{402, headers, json("{'metric':'text','plan':'Free','limit':20}")}, u"text"_s, quota);
    QVERIFY(!refused && std::holds_alternative<QuotaExceededError>(refused.error()));
    QCOMPARE(quota.metrics().at(u"text"_s), (MetricUsage{20, 20}));

    const auto unreadable = meteredAnswer(HttpResponse{402, {}, "pay"}, u"text"_s, quota);
    QCOMPARE(description(unreadable.error()), u"Request failed (HTTP 402) pay"_s);
    const auto failed = meteredAnswer(HttpResponse{500, {}, QByteArray(200, 'x')}, u"text"_s, quota);
    QCOMPARE(description(failed.error()), u"Request failed (HTTP 500) "_s + QString(80, u'x'));
    const auto silent = meteredAnswer(std::unexpected(HttpError{HttpError::Reason::timedOut, {}}), u"text"_s, quota);
    QCOMPARE(description(silent.error()), HttpError({HttpError::Reason::timedOut, {}}).description());
    QVERIFY(meteredAnswer(HttpResponse{204, {}, {}}, u"text"_s, quota));
  }

  void aLinkIsFoundWhereverServicesPutIt() {
    const auto find = [](const QByteArray& body) { return linkIn(HttpResponse{201, {}, json(body)}); };
    for (const char* body : {"https://l.example/a", "  https://l.example/a\r\n", "{'url':'https://l.example/a'}",
                             "{'url':7,'link':'https://l.example/a','href':'https://l.example/b'}",
                             "{'href':'https://l.example/a'}", "{'data':{'url':'https://l.example/a'}}"}) {
      const auto link = find(body);
      QVERIFY2(link, body);
      QCOMPARE(*link, QUrl(u"https://l.example/a"_s));
    }
    for (const char* body : {"", "ok", "{'url':'no link'}", "{'url':'/a'}", "{'url':'javascript:alert(1)'}",
                             "['https://l.example/a']", "http", "https://a b"}) {
      const auto link = find(body);
      QVERIFY2(!link, body);
      QCOMPARE(link.error().description(), u"No URL in response: "_s + QString::fromUtf8(json(body)));
    }
    QCOMPARE(find("\xff\xfe https://l.example/a").error().description(), u"No URL in response: "_s);
    QCOMPARE(linkIn(HttpResponse{404, {}, {}}).error().description(), u"Upload failed (HTTP 404) "_s);
  }
};

QTEST_GUILESS_MAIN(TestMetered)
#include "test_metered.moc"
