#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "core/net/download_file.h"
#include "core/net/http_client.h"
#include "support/files.h"
#include "support/full_disk.h"
#include "support/strict_server.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// One request to a real server, and how it ended.
struct Exchange {
  QtHttpClient client;
  Job job = Job::start();
  std::optional<std::expected<HttpResponse, HttpError>> result;
  int answers = 0;

  void send(const HttpRequest& request) {
    client.send(request, job, [this](const auto& outcome) {
      result = outcome;
      ++answers;
    });
  }
  HttpError::Reason reason() const { return result->error().reason; }
};

}  // namespace

class TestHttpClient : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void statusHeadersAndBodyComeBack() {
    StrictServer server;
    server.answer = [](const auto&) {
      return StrictServer::Answer{StrictServer::response(500, "oops", "X-Quota-Limit: 7\r\n")};
    };
    Exchange exchange;
    exchange.send({.method = "POST",
                   .url = server.url(u"/v1/x?y=1"_s),
                   .headers = {{"Authorization", "Bearer s"}, {"Content-Type", "application/json"}},
                   .body = "{}",
                   .timeout = 15s});
    QTRY_VERIFY(exchange.result);
    QCOMPARE(exchange.result->value().status, 500);
    QCOMPARE(exchange.result->value().body, "oops");
    QCOMPARE(exchange.result->value().header("x-quota-limit"), QByteArray("7"));
    QVERIFY(!exchange.result->value().header("X-Quota"));
    QCOMPARE(server.requests.at(0).line, "POST /v1/x?y=1 HTTP/1.1");
    QCOMPARE(server.requests[0].body, "{}");
    QCOMPARE(server.requests[0].headers.at("authorization"), "Bearer s");
    QCOMPARE(server.malformed, 0);
  }

  void refusedAndCutConnectionsAreErrors() {
    Exchange refused;
    StrictServer closed;
    const QUrl nowhere = closed.url(u"/"_s);
    closed.close();
    refused.send({.method = "GET", .url = nowhere});
    QTRY_VERIFY(refused.result);
    QVERIFY(!*refused.result && refused.reason() == HttpError::Reason::unreachable);

    StrictServer server;
    server.answer = [](const auto&) {
      return StrictServer::Answer{"HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nonly so much"};
    };
    Exchange cut;
    cut.send({.method = "GET", .url = server.url(u"/"_s)});
    QTRY_VERIFY(cut.result);
    QVERIFY(!*cut.result && cut.reason() == HttpError::Reason::broken);
  }

  void aSilentServerRunsIntoTheTimeLimit() {
    StrictServer server;
    server.answer = [](const auto&) { return StrictServer::Answer{{}, true}; };
    Exchange exchange;
    exchange.send({.method = "GET", .url = server.url(u"/"_s), .timeout = 60ms});
    QTRY_VERIFY(exchange.result);
    QVERIFY(exchange.reason() == HttpError::Reason::timedOut);
    QTRY_COMPARE(server.closed, 1);
    QCOMPARE(exchange.answers, 1);
  }

  void aServerThatNeverStopsTalkingRunsIntoTheDeadline() {
    for (HttpRequest request :
         {HttpRequest{.method = "GET", .url = {}, .timeout = 10s, .deadline = 150ms},
          HttpRequest{.method = "POST", .url = {}, .body = "x", .timeout = 10s, .answerDeadline = 150ms}}) {
      StrictServer server;
      server.answer = [&server](const auto&) {
        auto* drip = new QTimer(&server);
        drip->start(5ms);
        QTcpSocket* socket = server.findChild<QTcpSocket*>();
        QObject::connect(drip, &QTimer::timeout, socket, [socket] { socket->write("x"); });
        return StrictServer::Answer{"HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n", true};
      };
      request.url = server.url(u"/"_s);
      Exchange exchange;
      exchange.send(request);
      QTRY_VERIFY(exchange.result);
      QVERIFY(!*exchange.result && exchange.reason() == HttpError::Reason::timedOut);
    }
  }

  void aLongAnswerIsBounded() {
    StrictServer server;
    server.answer = [](const auto&) {
      return StrictServer::Answer{StrictServer::response(200, QByteArray(5000, 'x'))};
    };
    for (const auto& [most, fits] : {std::pair{5000, true}, std::pair{4999, false}}) {
      Exchange exchange;
      exchange.send({.method = "GET", .url = server.url(u"/"_s), .maximumAnswer = most});
      QTRY_VERIFY(exchange.result);
      QCOMPARE(exchange.result->has_value(), fits);
      QVERIFY(fits || exchange.reason() == HttpError::Reason::tooLarge);
    }
  }

  void aCredentialNeverFollowsToAnotherHost() {
    StrictServer other;
    StrictServer server;
    server.answer = [&](const StrictServer::Request& request) {
      const QByteArray target = request.line.contains("/same") ? "/there" : other.url(u"/stolen"_s).toEncoded();
      if (request.line.contains("/there")) return StrictServer::Answer{StrictServer::response(200, "here")};
      return StrictServer::Answer{StrictServer::response(302, {}, "Location: " + target + "\r\n")};
    };
    const HttpHeaders headers{{"Authorization", "Bearer s"}};
    Exchange away;
    away.send({.method = "GET", .url = server.url(u"/away"_s), .headers = headers});
    QTRY_VERIFY(away.result);
    QVERIFY(!*away.result && away.reason() == HttpError::Reason::redirected);
    QVERIFY(other.requests.empty());

    Exchange same;
    same.send({.method = "GET", .url = server.url(u"/same"_s), .headers = headers});
    QTRY_VERIFY(same.result);
    QCOMPARE(same.result->value().body, "here");
  }

  void piecesAreHandedOnAsTheyArriveOfASuccessOfTheRightType() {
    StrictServer server;
    QByteArray pieces;
    Exchange exchange;
    const auto send = [&](const QByteArray& status, const QByteArray& type) {
      server.answer = [=](const auto&) {
        return StrictServer::Answer{
            "HTTP/1.1 " + status + "\r\nContent-Length: 8\r\nContent-Type: " + type + "\r\n\r\none ", true};
      };
      exchange.result.reset();
      pieces.clear();
      exchange.send({.method = "POST",
                     .url = server.url(u"/"_s),
                     .received = [&](const QByteArray& piece) { pieces += piece; },
                     .receivedType = "text/event-stream"});
    };
    const auto goOn = [&] {
      for (QTcpSocket* socket : server.findChildren<QTcpSocket*>()) socket->write("more");
    };
    send("200 OK", "Text/Event-Stream; charset=utf-8");
    QTRY_COMPARE(pieces, "one ");
    QVERIFY(!exchange.result);
    goOn();
    QTRY_VERIFY(exchange.result);
    QCOMPARE(pieces, "one more");
    QCOMPARE(exchange.result->value().body, "one more");
    QCOMPARE(exchange.result->value().mediaType(), "text/event-stream");

    for (const auto& [status, type] :
         {std::pair{"500 Oops", "text/event-stream"}, std::pair{"200 OK", "application/json"}}) {
      const std::size_t before = server.requests.size();
      send(status, type);
      QTRY_COMPARE(server.requests.size(), before + 1);
      goOn();
      QTRY_VERIFY(exchange.result);
      QCOMPARE(exchange.result->value().body, "one more");
      QCOMPARE(pieces, QByteArray());
    }
  }

  void aSinkTakesTheBodyOfASuccess() {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"new/image"_s);
    const QByteArray body = QByteArray(3'000'000, 'x') + "end";
    StrictServer server;
    int status = 200;
    server.answer = [&](const auto&) { return StrictServer::Answer{StrictServer::response(status, body)}; };
    Exchange exchange;
    std::shared_ptr<DownloadFile> file;
    const auto ask = [&] {
      file = DownloadFile::beside(path).value();
      exchange.result.reset();
      exchange.send({.method = "GET", .url = server.url(u"/"_s), .sink = file, .maximumAnswer = body.size()});
    };
    ask();
    QTRY_VERIFY(exchange.result);
    QVERIFY(*exchange.result && exchange.result->value().body.isEmpty());
    QCOMPARE(file->digest(), QCryptographicHash::hash(body, QCryptographicHash::Sha256));
    QVERIFY(!QFile::exists(path));
    QVERIFY(file->finish());
    QCOMPARE(readFile(path), body);
    QCOMPARE(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());

    status = 500;
    ask();
    QTRY_VERIFY(exchange.result);
    QCOMPARE(exchange.result->value().status, 500);
    QCOMPARE(file->digest(), QCryptographicHash::hash({}, QCryptographicHash::Sha256));

    status = 200;
    ask();
    {
      const SmallestFiles full(1'000'000);
      QTRY_VERIFY(exchange.result);
    }
    QVERIFY(!*exchange.result && exchange.reason() == HttpError::Reason::notKept);
    QVERIFY(exchange.result->error().description().contains(u"image.part: "_s));
    file->discard();
    QCOMPARE(QDir(folder.filePath(u"new"_s)).entryList(QDir::Files), QStringList(u"image"_s));
  }

  void nothingArrivesAfterTheEndOfTheJob() {
    StrictServer server;
    server.answer = [](const auto&) {
      return StrictServer::Answer{"HTTP/1.1 200 OK\r\nContent-Length: 8\r\n\r\none ", true};
    };
    Exchange exchange;
    int pieces = 0;
    exchange.send({.method = "GET", .url = server.url(u"/"_s), .received = [&](const QByteArray&) {
                     ++pieces;
                     exchange.job.cancel();
                   }});
    QTRY_COMPARE(pieces, 1);
    QTRY_COMPARE(server.closed, 1);
    QCOMPARE(exchange.answers, 0);
    QCOMPARE(pieces, 1);
  }

  void theEndOfTheJobBreaksTheExchangeOff() {
    StrictServer server;
    server.answer = [](const auto&) { return StrictServer::Answer{"HTTP/1.1 200 OK\r\n", true}; };
    Exchange exchange;
    exchange.send({.method = "GET", .url = server.url(u"/"_s), .timeout = 10s});
    QTRY_COMPARE(server.requests.size(), std::size_t{1});
    exchange.job.cancel();
    QTRY_COMPARE(server.closed, 1);
    QCOMPARE(exchange.answers, 0);
    exchange.send({.method = "GET", .url = server.url(u"/"_s)});
    QCoreApplication::processEvents();
    QCOMPARE(server.requests.size(), std::size_t{1});
  }

  void nobodyWaitsForWhatIsForgotten() {
    StrictServer server;
    QtHttpClient client;
    client.sendAndForget({.method = "POST", .url = server.url(u"/v1/events"_s), .body = "{}", .timeout = 15s});
    QTRY_COMPARE(server.requests.size(), std::size_t{1});
    QCOMPARE(server.requests[0].body, "{}");
  }
};

QTEST_GUILESS_MAIN(TestHttpClient)
#include "test_http_client.moc"
