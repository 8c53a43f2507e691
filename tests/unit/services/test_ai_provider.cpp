#include <QTest>

#include "support/files.h"
#include "support/service_world.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A check under way, and what it found.
struct Check {
  Check(ServiceWorld& world, const AIProvider& provider) {
    world.services.providerCheck.run(provider, job, [this](const auto& outcome) {
      isFine = outcome.has_value();
      text = outcome ? *outcome : outcome.error().description();
    });
    for (int turn = 0; turn < 3; ++turn) QCoreApplication::processEvents();
  }
  Job job = Job::start();
  std::optional<bool> isFine;
  QString text;
};

const AIProvider kLocal{ProviderKind::openAICompatible, u"http://127.0.0.1:9/v1/"_s, u"small"_s, {}, {}};
const AIProvider kAnthropic{ProviderKind::anthropic, {}, u"large"_s, {}, {}};
const QByteArray kModels = R"({"data": [{"id": "small"}, {"id": "large"}, {}, 7]})";

}  // namespace

class TestAIProvider : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void isKeptWithoutItsKey() {
    const QTemporaryDir directory;
    const QString path = directory.filePath(u"ai-provider.json"_s);
    AIProviderStore(path).update([](AIProvider& provider) { provider = kAnthropic; });
    QCOMPARE(AIProviderStore(path).value(), kAnthropic);
    writeFile(path, "{\"kind\": \"telepathy\", \"model\": \"m\"}");
    QCOMPARE(AIProviderStore(path).value(), (AIProvider{ProviderKind::none, {}, u"m"_s, {}, {}}));
  }

  void anOpenAICompatibleProviderIsAskedForItsModels() {
    ServiceWorld world;
    world.vault.secrets[u"ai-provider"_s] = "key";
    Check check(world, kLocal);
    const HttpRequest& request = world.http.sent.at(0);
    QCOMPARE(request.url, QUrl(u"http://127.0.0.1:9/v1/models"_s));
    QCOMPARE(request.headers, (HttpHeaders{{"Authorization", "Bearer key"}}));
    QCOMPARE(request.deadline, 20s);
    world.http.answer(200, kModels);
    QVERIFY2(check.isFine.value_or(false), qPrintable(check.text));
  }

  void aLocalProviderNeedsNoKey() {
    ServiceWorld world;
    const Check check(world, kLocal);
    QVERIFY(world.http.sent.at(0).headers.empty());
  }

  void anthropicIsAskedInItsOwnWay() {
    ServiceWorld world;
    QCOMPARE(Check(world, kAnthropic).isFine, false);
    QVERIFY(world.http.sent.empty());
    world.services.providerKey.store("key", Job::start(), [](const auto&) {});
    world.vault.secrets[u"ai-provider"_s] = "key";
    Check check(world, kAnthropic);
    const HttpRequest& request = world.http.sent.at(0);
    QCOMPARE(request.url.host(), u"api.anthropic.com"_s);
    QCOMPARE(request.url.path(), u"/v1/models"_s);
    QCOMPARE(request.headers, (HttpHeaders{{"anthropic-version", "2023-06-01"}, {"x-api-key", "key"}}));
    world.http.answer(200, kModels);
    QCOMPARE(check.isFine, true);
  }

  void everyFailureIsTold() {
    ServiceWorld world;
    QStringList texts;
    const auto fail = [&](const AIProvider& provider, std::optional<HttpResponse> response) {
      Check check(world, provider);
      if (response) QVERIFY(world.http.answer(*response));
      QCOMPARE(check.isFine, false);
      QVERIFY(!check.text.isEmpty() && !texts.contains(check.text));
      texts.append(check.text);
    };
    AIProvider other = kLocal;
    fail({}, std::nullopt);
    other.baseUrl.clear();
    fail(other, std::nullopt);
    other.baseUrl = u"http://far.example"_s;
    fail(other, std::nullopt);
    fail(kLocal, HttpResponse{401, {}, {}});
    fail(kLocal, HttpResponse{404, {}, {}});
    fail(kLocal, HttpResponse{500, {}, "oops"});
    QVERIFY(texts.last().endsWith(u"(HTTP 500) oops"_s));
    fail(kLocal, HttpResponse{200, {}, "<html>"});
    fail(kLocal, HttpResponse{200, {}, "{\"data\": [{\"id\": \"smaller\"}]}"});
    QVERIFY(texts.last().contains(u"small"_s));
    other = kLocal;
    other.model.clear();
    fail(other, HttpResponse{200, {}, kModels});
  }

  void aCommandIsLookedForAndNotRun() {
    const QTemporaryDir directory;
    const QString program = directory.filePath(u"my agent"_s);
    const QString ran = directory.filePath(u"ran"_s);
    QVERIFY(writeFile(program, "#!/bin/sh\ntouch " + ran.toUtf8()));
    const QString line = u"\"%1\" -p --model x"_s.arg(program);
    QVERIFY(resolveCommand(line).error().description().contains(u"not executable"_s));
    QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QCOMPARE(resolveCommand(line).value_or(QString()), program);
    QVERIFY(!QFile::exists(ran));
    QVERIFY(resolveCommand(u"sh -c x"_s).value_or(QString()).endsWith(u"/sh"_s));
    for (const QString& bad : {u""_s, u"  "_s, u"./sh"_s, u"no-such-program-here"_s, directory.path()})
      QVERIFY2(!resolveCommand(bad), qPrintable(bad));
  }
};

QTEST_GUILESS_MAIN(TestAIProvider)
#include "test_ai_provider.moc"
