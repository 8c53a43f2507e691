#include <QSignalSpy>
#include <QSslServer>
#include <QSslSocket>
#include <QTest>

#include "core/net/http_client.h"
#include "support/strict_server.h"
#include "support/test_certificate.h"

using namespace Qt::StringLiterals;

namespace {

/// One request, and how it ended.
struct Exchange {
  explicit Exchange(const QUrl& url) {
    const HttpRequest request{.method = "GET", .url = url, .headers = {{"Authorization", "Bearer secret"}}};
    client.send(request, job, [this](const auto& outcome) { result = outcome; });
  }
  QtHttpClient client;
  Job job = Job::start();
  std::optional<std::expected<HttpResponse, HttpError>> result;
};

/// A server whose certificate nobody has signed; keeps what it is told in spite of that.
class UnsignedServer : public QSslServer {
 public:
  explicit UnsignedServer(const QSslCertificate& certificate) {
    QSslConfiguration configuration;
    configuration.setLocalCertificate(certificate);
    configuration.setPrivateKey(TestCertificate::key());
    setSslConfiguration(configuration);
    listen(QHostAddress::LocalHost);
    connect(this, &QTcpServer::pendingConnectionAvailable, this, [this] {
      QTcpSocket* const socket = nextPendingConnection();
      connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
        heard += socket->readAll();
        socket->write(StrictServer::response(200, "{}"));
      });
    });
  }
  QByteArray heard;
};

}  // namespace

/// By which ways a request goes, and which it does not.
class TestHttpRoutes : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    // Read by the system's own proxy settings at the first request.
    proxy_.answer = [](const StrictServer::Request&) {
      return StrictServer::Answer{StrictServer::response(200, "by the proxy")};
    };
    const QByteArray address = proxy_.url({}).toEncoded();
    qputenv("http_proxy", address);
    qputenv("HTTP_PROXY", address);
    qunsetenv("no_proxy");
    qunsetenv("NO_PROXY");
  }

  void theSystemsProxyIsUsed() {
    Exchange exchange(QUrl(u"http://service.example/v1/quota"_s));
    QTRY_VERIFY(exchange.result);
    QVERIFY(*exchange.result);
    QCOMPARE(exchange.result->value().body, "by the proxy");
    QCOMPARE(proxy_.requests.back().line, "GET http://service.example/v1/quota HTTP/1.1");
  }

  void thisComputerIsReachedWithoutIt() {
    StrictServer server;
    const auto before = proxy_.requests.size();
    for (const QString& host : {u"127.0.0.1"_s, u"localhost"_s}) {
      QUrl url = server.url(u"/"_s);
      url.setHost(host);
      Exchange exchange(url);
      QTRY_VERIFY(exchange.result);
      QVERIFY(*exchange.result);
    }
    QCOMPARE(server.requests.size(), std::size_t{2});
    QCOMPARE(proxy_.requests.size(), before);
  }

  void nothingIsSaidToWhomNobodyVouchesFor() {
    UnsignedServer server(TestCertificate::certificate());
    Exchange exchange(QUrl(u"https://localhost:%1/"_s.arg(server.serverPort())));
    QTRY_VERIFY(exchange.result);
    QVERIFY(!*exchange.result);
    QVERIFY(exchange.result->error().reason == HttpError::Reason::insecure);
    QVERIFY2(server.heard.isEmpty(), "the credential was sent");
  }

  void aCertificateForAnotherNameIsNone() {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    const QSslConfiguration before = configuration;
    configuration.addCaCertificate(TestCertificate::certificate());
    QSslConfiguration::setDefaultConfiguration(configuration);
    UnsignedServer server(TestCertificate::certificate());
    Exchange trusted(QUrl(u"https://localhost:%1/"_s.arg(server.serverPort())));
    QTRY_VERIFY(trusted.result);
    QVERIFY(*trusted.result);
    server.heard.clear();
    // Every address of the network 127 is this computer; the certificate names one.
    QSslServer elsewhere;
    QVERIFY(elsewhere.listen(QHostAddress(u"127.0.0.2"_s)));
    elsewhere.setSslConfiguration(server.sslConfiguration());
    Exchange mistaken(QUrl(u"https://127.0.0.2:%1/"_s.arg(elsewhere.serverPort())));
    QTRY_VERIFY(mistaken.result);
    QSslConfiguration::setDefaultConfiguration(before);
    QVERIFY(!*mistaken.result && mistaken.result->error().reason == HttpError::Reason::insecure);
  }

 private:
  StrictServer proxy_;
};

QTEST_GUILESS_MAIN(TestHttpRoutes)
#include "test_http_routes.moc"
