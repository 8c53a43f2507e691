#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <future>

#include "core/net/app_channel.h"
#include "core/settings/app_preferences.h"
#include "support/command_world.h"
#include "support/strict_multipart.h"
#include "tools/image_to_url/uplink_settings.h"

using namespace Qt::StringLiterals;

namespace {

const QByteArray kLinkAnswer = R"({"url": "https://links.example/l/1"})";
const QByteArray kQuotaAnswer =
    R"({"plan": "free", "resetsAt": "2026-12-01T12:00:00Z", "usage": {"text": {"used": 3, "limit": 100}}})";

using World = CommandWorld;

}  // namespace

class TestServiceCommands : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void linkSendsAnImageAsItIs() {
    World world;
    StrictServer server;
    server.answer = [](const auto&) { return StrictServer::Answer{StrictServer::response(200, kLinkAnswer)}; };
    world.useServer(server);
    const Run run = world.run({u"link"_s, world.image(u"ünï.dat"_s)});
    QCOMPARE(run.out, u"https://links.example/l/1\n"_s);
    QCOMPARE(run.err, QString());
    QCOMPARE(run.code, exit_code::kSuccess);
    QCOMPARE(server.requests.front().line, "POST /v1/images HTTP/1.1");
    const auto parts = StrictForm::parse(server.requests.front().headers["content-type"], server.requests.front().body);
    const std::vector<FormPart> expected{{"file", "ünï.gif", "image/gif", kPixel}};
    QCOMPARE(parts, std::optional(expected));
    QCOMPARE(world.run({u"link"_s, u"-"_s, u"--json"_s}, kPixel).out, u"{\"url\":\"https://links.example/l/1\"}\n"_s);
    QVERIFY(server.requests.back().body.contains("filename=\"image.gif\""));
  }

  void linkMakesOtherPicturesAPNG() {
    World world;
    StrictServer server;
    server.answer = [](const auto&) { return StrictServer::Answer{StrictServer::response(200, kLinkAnswer)}; };
    world.useServer(server);
    const QString path = world.image(u"scan.tiff"_s);
    QImage picture(3, 2, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QVERIFY(picture.save(path, "tiff"));
    QCOMPARE(world.run({u"link"_s, path}).code, exit_code::kSuccess);
    const auto parts = StrictForm::parse(server.requests.front().headers["content-type"], server.requests.front().body);
    QVERIFY(parts);
    QCOMPARE(parts->front().filename, "scan.png");
    QCOMPARE(QImage::fromData(parts->front().content, "png").size(), QSize(3, 2));
  }

  void whatIsNoReportIsNotSent() {
    World world;
    StrictServer server;
    world.useServer(server);
    for (const QStringList& arguments : {QStringList{u"suggest"_s},
                                         {u"suggest"_s, u"a"_s, u"b"_s},
                                         {u"feedback"_s, u"a"_s},
                                         {u"feedback"_s, u"--category"_s, u"praise"_s, u"a"_s},
                                         {u"suggest"_s, u"-"_s, u"--image"_s, u"-"_s}})
      QCOMPARE(world.run(arguments).code, exit_code::kUsage);
    QVERIFY(world.run({u"suggest"_s, u"-"_s}, " \n").err.contains(u"the text is empty"_s));
    const QString text = world.image(u"notes.txt"_s, "words");
    QCOMPARE(world.run({u"suggest"_s, u"a"_s, u"--image"_s, text}).err,
             u"vantle: %1: this is not an image\n"_s.arg(text));
    QVERIFY(server.requests.empty());
  }

  void promptsArePrinted() {
    World world;
    StrictServer server;
    server.answer = [](const auto&) {
      return StrictServer::Answer{StrictServer::response(200, R"({"prompt": "A dot."})")};
    };
    world.useServer(server);
    const QString file = world.image(u"dot.gif"_s);
    const auto sentMode = [&server] {
      const QByteArray& body = server.requests.back().body;
      return body.mid(body.indexOf("name=\"mode\"\r\n\r\n") + 15).left(2);
    };
    QCOMPARE(world.run({u"prompt"_s, file}).out, u"A dot.\n"_s);
    QCOMPARE(server.requests.back().line, "POST /ai-prompt HTTP/1.1");
    QCOMPARE(sentMode(), "ge");
    QCOMPARE(world.run({u"config"_s, u"set"_s, u"image-to-prompt-style"_s, u"image"_s}).code, exit_code::kSuccess);
    world.run({u"prompt"_s, u"-"_s}, kPixel);
    QCOMPARE(sentMode(), "im");
    world.run({u"prompt"_s, file, u"--mode"_s, u"ui"_s});
    QCOMPARE(sentMode(), "ui");
    QCOMPARE(world.run({u"prompt"_s, file, u"--mode"_s, u"ask"_s}).code, exit_code::kUsage);
  }

  void linkNamesWhatIsWrong() {
    World world;
    StrictServer server;
    server.answer = [](const auto&) { return StrictServer::Answer{StrictServer::response(507, "full\n")}; };
    world.useServer(server);
    const QString missing = world.directory.filePath(u"missing.png"_s);
    const QString text = world.image(u"notes.png"_s, "no image");
    QCOMPARE(world.run({u"link"_s, missing}).err, u"vantle: %1: there is no such file\n"_s.arg(missing));
    QCOMPARE(world.run({u"link"_s, text}).err, u"vantle: %1: this is not an image\n"_s.arg(text));
    QCOMPARE(world.run({u"link"_s, world.directory.path()}).err,
             u"vantle: %1: not a regular file\n"_s.arg(world.directory.path()));
    QVERIFY(server.requests.empty());
    const Run full = world.run({u"link"_s, world.image(u"a.gif"_s)});
    QCOMPARE(full.err, u"vantle: Upload failed (HTTP 507) full\\n\n"_s);
    QCOMPARE(full.code, exit_code::kFailure);
    QCOMPARE(full.out, QString());
    QCOMPARE(world.run({u"link"_s}).code, exit_code::kUsage);
    QCOMPARE(world.run({u"link"_s, u"a"_s, u"b"_s}).code, exit_code::kUsage);
  }

  void aLinkOfTheBuiltInServiceNeedsTheApplication() {
    World world;
    const Run run = world.run({u"link"_s, world.image(u"a.gif"_s)});
    QCOMPARE(run.code, exit_code::kFailure);
    QVERIFY2(
        run.err.startsWith(u"vantle: Vantle is not running, and a link of the built-in service opens only while it"_s),
        qPrintable(run.err));
  }

  void theRunningApplicationLendsItsService() {
    World world;
    StrictServer server;
    server.answer = [](const auto&) { return StrictServer::Answer{StrictServer::response(200, kLinkAnswer)}; };
    const QString image = world.image(u"a.gif"_s);
    QJsonObject answer{{u"url"_s, server.url({}).toString()}, {u"token"_s, u"lent"_s}};
    AppServer application([&answer](const QJsonObject& request, const auto& reply) {
      reply(request["do"_L1].toString() == "service"_L1 ? answer : QJsonObject());
    });
    QVERIFY(application.listen());
    QCOMPARE(inThread(world, {u"link"_s, image}).out, u"https://links.example/l/1\n"_s);
    QCOMPARE(server.requests.front().headers["authorization"], "Bearer lent");
    answer = {{u"error"_s, u"The built-in service does not start."_s}};
    QCOMPARE(inThread(world, {u"link"_s, image}).err, u"vantle: The built-in service does not start.\n"_s);
  }

  void quotaPrintsWhatIsLeft() {
    World world;
    StrictServer server;
    server.answer = [](const auto&) { return StrictServer::Answer{StrictServer::response(200, kQuotaAnswer)}; };
    world.useServer(server);
    QCOMPARE(world.run({u"quota"_s}).err, u"vantle: Enter your credential first.\n"_s);
    world.vault.secrets[u"api"_s] = "secret";
    QCOMPARE(
        world.run({u"quota"_s}).out,
        u"Plan                free\nText                3 of 100, 97 left this month\nResets              Dec 1\n"_s);
    QCOMPARE(server.requests.back().headers["authorization"], "Bearer secret");
    const auto json = QJsonDocument::fromJson(world.run({u"quota"_s, u"--json"_s}).out.toUtf8());
    QCOMPARE(json["usage"_L1]["text"_L1]["used"_L1].toInt(), 3);
  }

  void whatIsNoQuestionIsNotAsked() {
    World world;
    StrictServer server;
    world.useServer(server);
    const QString history = world.directory.filePath(u"history.json"_s);
    QVERIFY(writeFile(history, "{}"));
    QVERIFY(world.run({u"ask"_s, u"And?"_s, u"--history"_s, history})
                .err.endsWith(u"this is not a JSON array of questions and answers\n"_s));
    QVERIFY(world.run({u"ask"_s, u"And?"_s, u"--image"_s, history}).err.contains(u"history.json cannot be attached"_s));
    QCOMPARE(world.run({u"ask"_s, u" "_s}).code, exit_code::kUsage);
    QCOMPARE(world.run({u"ask"_s}).code, exit_code::kUsage);
    QVERIFY(server.requests.empty());
  }

  void configSetsSettings() {
    World world;
    for (const auto& [name, value] : {std::pair{u"image-to-url-source"_s, u"liveSelection"_s},
                                      {u"text-transform-output"_s, u"replace"_s},
                                      {u"toast-duration"_s, u"7.5"_s},
                                      {u"sound-on-complete"_s, u"off"_s},
                                      {u"appearance"_s, u"dark"_s}}) {
      const Run run = world.run({u"config"_s, u"set"_s, name, value});
      QVERIFY2(run.code == exit_code::kSuccess, qPrintable(run.err));
    }
    QCOMPARE(UplinkStore(world.folders.file(u"Uplink/settings.json"_s)).value().source, ImageSource::liveSelection);
    const Preferences preferences = AppPreferences(world.folders.file(u"app-settings.json"_s)).value();
    QCOMPARE(preferences.toastDuration, 7.5);
    QVERIFY(!preferences.soundOnComplete);
    QVERIFY(world.run({u"config"_s, u"show"_s}).out.contains(u"\nimage-to-url-source     liveSelection\n"_s));
    QCOMPARE(world.run({u"config"_s, u"set"_s, u"appearance"_s}).code, exit_code::kUsage);
    for (const auto& [name, value] : {std::pair{u"toast-duration"_s, u"nan"_s},
                                      {u"toast-duration"_s, u"61"_s},
                                      {u"appearance"_s, u"light"_s},
                                      {u"no-such"_s, u"on"_s}}) {
      const Run run = world.run({u"config"_s, u"set"_s, name, value});
      QCOMPARE(run.code, exit_code::kUsage);
      QVERIFY2(run.err.contains(u"toast-duration          2 to 60, in seconds"_s), qPrintable(run.err));
    }
  }

  void configSetsTheServiceAndItsSecrets() {
    World world;
    QCOMPARE(world.run({u"config"_s, u"service"_s, u"api"_s, u"https://own.example/v/"_s}).code, exit_code::kSuccess);
    QVERIFY(world.run({u"config"_s, u"service"_s, u"links"_s, u"http://far.example"_s}).err.contains(u"https://"_s));
    QCOMPARE(world.run({u"config"_s, u"service"_s, u"token"_s}, "tok-1\nrest").code, exit_code::kSuccess);
    QCOMPARE(world.run({u"config"_s, u"service"_s, u"credential"_s}, "cred-1\r\n").code, exit_code::kSuccess);
    QCOMPARE(world.vault.secrets[u"api"_s], "cred-1");
    QCOMPARE(world.run({u"config"_s, u"service"_s, u"credential"_s}, "\n").code, exit_code::kFailure);
    QCOMPARE(world.run({u"config"_s, u"service"_s, u"credential"_s}, "two words\n").code, exit_code::kFailure);
    QCOMPARE(world.run({u"config"_s, u"service"_s, u"token"_s, u"tok-2"_s}).code, exit_code::kUsage);
    QVERIFY(world.run({u"config"_s, u"service"_s}).err.contains(u"\n    service use own|standard\n"_s));
    const QString path = world.folders.file(u"services.json"_s);
    QCOMPARE(ServiceConfiguration(path).value().api, u"https://own.example/v"_s);
    QCOMPARE(ServiceConfiguration(path).value().token, u"tok-1"_s);
    const Run shown = world.run({u"config"_s, u"show"_s, u"--json"_s});
    QVERIFY(!shown.out.contains(u"tok-1"_s) && !shown.out.contains(u"cred-1"_s));
    const auto service = QJsonDocument::fromJson(shown.out.toUtf8())["service"_L1];
    QCOMPARE(service["inUse"_L1].toString(), u"own"_s);
    QCOMPARE(service["credential"_L1].toString(), u"holds your credential"_s);
    QCOMPARE(world.run({u"config"_s, u"service"_s, u"use"_s, u"standard"_s}).code, exit_code::kSuccess);
    QCOMPARE(ServiceConfiguration(path).mode(), ServiceMode::builtIn);
    for (const QString& name : {u"api"_s, u"token"_s, u"credential"_s})
      QCOMPARE(world.run({u"config"_s, u"service"_s, u"remove"_s, name}).code, exit_code::kSuccess);
    QVERIFY(ServiceConfiguration(path).value().api.isEmpty() && ServiceConfiguration(path).value().token.isEmpty());
    QVERIFY(!world.vault.secrets.contains(u"api"_s));
    world.vault.error = CredentialError{};
    QCOMPARE(world.run({u"config"_s, u"service"_s, u"credential"_s}, "cred-2").code, exit_code::kFailure);
  }

  void uploadPrintsTheLinkOfOneFileOrAZip() {
    World world;
    StrictServer server;
    world.useServer(server);
    server.answer = [](const auto&) { return StrictServer::Answer{StrictServer::response(200, kLinkAnswer)}; };
    const QString one = world.image(u"one.gif"_s);
    const QString two = world.image(u"two.gif"_s);
    const Run single = world.run({u"upload"_s, one, one});
    QCOMPARE(single.err, QString());
    QCOMPARE(single.out, u"https://links.example/l/1\n"_s);
    const Run several = world.run({u"upload"_s, u"--json"_s, one, two});
    QCOMPARE(several.out, u"{\"url\":\"https://links.example/l/1\"}\n"_s);
    const auto typeOf = [&server](std::size_t number) {
      const auto& request = server.requests.at(number);
      return StrictForm::parse(request.headers.at("content-type"), request.body)->at(0).contentType;
    };
    QCOMPARE(typeOf(0), "image/gif");
    QCOMPARE(typeOf(1), "application/zip");
  }

  void uploadSaysWhatIsWrong() {
    World world;
    StrictServer server;
    world.useServer(server);
    QCOMPARE(world.run({u"upload"_s}).code, exit_code::kUsage);
    const Run missing = world.run({u"upload"_s, world.directory.filePath(u"gone"_s)});
    QCOMPARE(missing.code, exit_code::kFailure);
    QCOMPARE(missing.err, u"vantle: gone: There is no such file or folder.\n"_s);
    server.answer = [](const auto&) { return StrictServer::Answer{StrictServer::response(413, "too large")}; };
    const Run refused = world.run({u"upload"_s, world.image(u"one.gif"_s)});
    QCOMPARE(refused.code, exit_code::kFailure);
    QCOMPARE(refused.err, u"vantle: Upload failed (HTTP 413) too large\n"_s);
    QVERIFY(refused.out.isEmpty());
  }

 private:
  /// The command in a thread of its own, while this one is the application.
  static Run inThread(World& world, const QStringList& arguments) {
    auto result = std::async(std::launch::async, [&] { return world.run(arguments); });
    while (result.wait_for(std::chrono::seconds(0)) != std::future_status::ready) QCoreApplication::processEvents();
    return result.get();
  }
};

QTEST_GUILESS_MAIN(TestServiceCommands)
#include "test_service_commands.moc"
