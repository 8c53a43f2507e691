#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include "services/base_url.h"
#include "support/files.h"
#include "support/service_world.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TestServiceConfiguration : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void baseUrlsAreCheckedAndTrimmed() {
    const QList<std::pair<QString, QString>> good = {
        {u"https://a.example"_s, u"https://a.example"_s},
        {u" https://a.example:8443/base// "_s, u"https://a.example:8443/base"_s},
        {u"http://localhost:9/"_s, u"http://localhost:9"_s},
        {u"http://127.0.0.1:9"_s, u"http://127.0.0.1:9"_s},
        {u"http://[::1]:9"_s, u"http://[::1]:9"_s},
        {u"HTTPS://A.example/%2F"_s, u"https://a.example/%2F"_s}};
    for (const auto& [text, url] : good) QCOMPARE(parseBaseUrl(text).value_or(QUrl()), QUrl(url));
    using Reason = BaseUrlError::Reason;
    const QList<std::pair<QString, Reason>> bad = {{u""_s, Reason::notAnAddress},
                                                   {u"a.example"_s, Reason::notAnAddress},
                                                   {u"https://"_s, Reason::notAnAddress},
                                                   {u"ftp://a.example"_s, Reason::notAnAddress},
                                                   {u"/x"_s, Reason::notAnAddress},
                                                   {u"https://a b.example"_s, Reason::notAnAddress},
                                                   {u"http://a.example"_s, Reason::insecure},
                                                   {u"http://localhost.evil.example"_s, Reason::insecure},
                                                   {u"https://u@a.example"_s, Reason::hasMore},
                                                   {u"https://u:p@a.example"_s, Reason::hasMore},
                                                   {u"https://a.example?x"_s, Reason::hasMore},
                                                   {u"https://a.example/#x"_s, Reason::hasMore}};
    for (const auto& [text, reason] : bad) {
      const auto url = parseBaseUrl(text);
      QVERIFY2(!url && url.error().reason == reason, qPrintable(text));
    }
    QCOMPARE(below(QUrl(u"https://a.example/base/"_s), u"/v1/x"_s), QUrl(u"https://a.example/base/v1/x"_s));
  }

  void theModeFollowsTheHosts() {
    const QTemporaryDir directory;
    const QString path = directory.filePath(u"services.json"_s);
    ServiceConfiguration bare(path, {});
    QVERIFY(bare.mode() == ServiceMode::builtIn);
    ServiceConfiguration preset(path, {u"api.example"_s, u"links.example"_s, u"preset"_s});
    QVERIFY(preset.mode() == ServiceMode::presetHosts);
    QCOMPARE(preset.hosts()->url(ServiceOperation::quota).value(), QUrl(u"https://api.example/v1/quota"_s));
    QCOMPARE(preset.hosts()->url(ServiceOperation::image).value(), QUrl(u"https://links.example/v1/images"_s));
    QCOMPARE(preset.hosts()->serviceToken, "preset");

    preset.update([](ServiceSettings& settings) { settings.links = u"http://127.0.0.1:9/l/"_s; });
    QVERIFY(preset.mode() == ServiceMode::ownHosts);
    const auto own = preset.hosts();
    QCOMPARE(own->url(ServiceOperation::upload).value(), QUrl(u"http://127.0.0.1:9/l/v1/upload"_s));
    QVERIFY(!own->url(ServiceOperation::quota));
    QVERIFY2(own->serviceToken.isEmpty(), "a token must not reach a host it was not made for");
    preset.update([](ServiceSettings& settings) {
      settings.token = u"own"_s;
      settings.useOwnHosts = false;
    });
    QVERIFY(preset.mode() == ServiceMode::presetHosts);
    QCOMPARE(preset.hosts()->serviceToken, "preset");
    QCOMPARE(ServiceConfiguration(path, {}).value(), preset.value());
  }

  void theFileIsReadAnewAndKeepsWhatItDoesNotKnow() {
    ServiceWorld world;
    ServiceConfiguration& configuration = world.services.configuration;
    const QString path = world.folders.file(u"services.json"_s);
    const auto write = [&path](const QJsonObject& object) { QVERIFY(writeFile(path, QJsonDocument(object).toJson())); };
    write({{u"api"_s, u"https://a.example"_s}, {u"token"_s, u"t"_s}, {u"later"_s, QJsonArray{1}}});
    const auto hosts = configuration.hosts();
    QCOMPARE(hosts->api, QUrl(u"https://a.example"_s));
    QCOMPARE(hosts->serviceToken, "t");
    configuration.update([](ServiceSettings& settings) { settings.api.clear(); });
    const QJsonObject kept = QJsonDocument::fromJson(readFile(path)).object();
    QCOMPARE(kept, (QJsonObject{{u"token"_s, u"t"_s}, {u"later"_s, QJsonArray{1}}}));

    write({{u"api"_s, u"http://a.example"_s}});
    QVERIFY(configuration.hosts().error().description().startsWith(u"The API URL cannot be used."_s));
    write({{u"api"_s, 7}, {u"links"_s, QJsonValue::Null}});
    QVERIFY(configuration.hosts() && configuration.mode() == ServiceMode::builtIn);
    QVERIFY(QFile::remove(path));
    QVERIFY(configuration.hosts() && configuration.value() == ServiceSettings{});
  }

  void eventsGoToTheServiceWithTheCredentialIfThereIsOne() {
    ServiceWorld world;
    world.useOwnHosts();
    const auto send = [&] {
      world.services.events.send({{u"event"_s, u"app_launched"_s}});
      for (int turn = 0; turn < 5; ++turn) QCoreApplication::processEvents();
    };
    world.vault.error = CredentialError{CredentialError::Reason::noKeychain, {}};
    send();
    world.vault.error.reset();
    send();
    QCOMPARE(world.http.sent.size(), std::size_t{2});
    const HttpRequest& request = world.http.sent[1];
    QCOMPARE(request.method, "POST");
    QCOMPARE(request.url, QUrl(u"https://api.example/v1/events"_s));
    const QByteArray body = R"({"event":"app_launched"})";
    QCOMPARE(request.body, body);
    QCOMPARE(request.timeout, 15s);
    const HttpHeaders without{{"Content-Type", "application/json"}};
    QCOMPARE(world.http.sent[0].headers, without);
    QCOMPARE(request.headers, (HttpHeaders{without[0], {"Authorization", "Bearer secret"}}));

    world.services.configuration.update([](ServiceSettings& settings) { settings.api = u"http://a.example"_s; });
    send();
    QCOMPARE(world.http.sent.size(), std::size_t{2});
  }
};

QTEST_GUILESS_MAIN(TestServiceConfiguration)
#include "test_service_configuration.moc"
