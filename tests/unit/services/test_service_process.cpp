#include <QFileInfo>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

#include "services/provider_brief.h"
#include "services/quota_client.h"
#include "services/service_process.h"
#include "support/fake_clock.h"
#include "support/fake_vault.h"
#include "support/files.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// The real program as a child, or whatever `program` names; time stands still.
struct Stage {
  explicit Stage(const QString& program = QStringLiteral(VANTLE_SERVICE_PROGRAM))
      : service({program, directory.filePath(u"service"_s)}, clock) {}

  /// Asks and lets the clock go just far enough for what is due at once.
  void ask() {
    result.reset();
    service.locate(job, [this](const auto& location) { result = location; });
    clock.advance(0ms);
  }
  /// What the service says to a question.
  QByteArray answer() {
    QtHttpClient http;
    std::optional<QByteArray> said;
    HttpRequest request{.method = "POST", .url = (*result)->api.resolved(QUrl(u"/v1/answers"_s)), .deadline = 10s};
    request.body = R"({"question": "why?"})";
    request.headers.emplace_back("Authorization", "Bearer " + (*result)->serviceToken);
    http.send(request, job, [&](const auto& response) { said = response ? response->body : QByteArray("none"); });
    return QTest::qWaitFor([&] { return said.has_value(); }, 10'000) ? *said : QByteArray("nothing");
  }
  QUrl api() const { return result && *result ? (*result)->api : QUrl(); }

  QTemporaryDir directory;
  FakeClock clock;
  ServiceProcess service;
  Job job = Job::start();
  std::optional<std::expected<ServiceLocation, ServiceError>> result;
};

bool isAlive(qint64 pid) { return kill(static_cast<pid_t>(pid), 0) == 0; }

}  // namespace

class TestServiceProcess : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void startsAtTheFirstUseAndOnlyOnce() {
    Stage stage;
    QCOMPARE(stage.service.processId(), 0);
    QSignalSpy changes(&stage.service, &BuiltInService::runningChanged);
    stage.ask();
    QTRY_VERIFY(stage.result);
    QVERIFY(*stage.result);
    QVERIFY((*stage.result)->isBuiltIn && stage.service.isRunning());
    QCOMPARE(changes.size(), 1);
    const qint64 pid = stage.service.processId();
    const QUrl first = stage.api();
    stage.ask();
    QTRY_COMPARE(stage.api(), first);
    QCOMPARE(stage.service.processId(), pid);
    QCOMPARE(QFileInfo(stage.directory.filePath(u"service"_s)).permissions() & QFile::Permissions(0x0077),
             QFile::Permissions());
  }

  void isToldWhoAnswersBeforeAnybodyIsSentToIt() {
    Stage stage;
    FakeVault vault;
    vault.secrets[u"ai-provider"_s] = "a\nb";
    AIProviderStore provider(stage.directory.filePath(u"ai-provider.json"_s));
    UserCredential key(vault, UserCredential::kProviderAccount);
    const ProviderBrief brief(provider, key, stage.service);
    stage.ask();
    QTRY_VERIFY(stage.result);
    QVERIFY(stage.answer().contains("No AI provider is set. Choose one in Settings"));
    provider.update([](AIProvider& changed) {
      changed.kind = ProviderKind::openAICompatible;
      changed.baseUrl = u"https://127.0.0.1:1"_s;
    });
    const qint64 pid = stage.service.processId();
    stage.ask();
    QVERIFY(!stage.result);
    QTRY_VERIFY(stage.result);
    QVERIFY(stage.answer().contains("its key has characters"));
    vault.error = CredentialError{CredentialError::Reason::denied, {}};
    key.forget();
    stage.ask();
    QTRY_VERIFY(stage.result);
    QVERIFY(stage.answer().contains("The keychain is locked"));
    QCOMPARE(stage.service.processId(), pid);
  }

  void linksDoNotWaitForTheKeychain() {
    Stage stage;
    stage.service.setBrief([](const JobRef&, const auto&) {});
    stage.ask();
    QTRY_VERIFY(stage.service.isRunning());
    QVERIFY(!stage.result);
    stage.clock.advance(3s);
    QVERIFY(stage.result && *stage.result);
    QVERIFY(stage.answer().contains("The keychain has not given the AI provider's key yet"));
  }

  void isStartedAnewAfterItHasDiedButNotAtOnce() {
    Stage stage;
    stage.ask();
    QTRY_VERIFY(stage.result);
    const qint64 first = stage.service.processId();
    const QUrl address = stage.api();
    kill(static_cast<pid_t>(first), SIGKILL);
    QTRY_VERIFY(!stage.service.isRunning());
    stage.ask();
    QCOMPARE(stage.service.processId(), 0);
    stage.clock.advance(500ms);
    QTRY_VERIFY(stage.result);
    QVERIFY(*stage.result && stage.service.processId() != first);
    // The links of before open again.
    QCOMPARE(stage.api(), address);
  }

  void aPortThatSomebodyElseHasNowIsLeftToHim() {
    QTcpServer other;
    QVERIFY(other.listen(QHostAddress::LocalHost));
    Stage stage;
    QVERIFY(writeFile(stage.directory.filePath(u"service/port"_s), QByteArray::number(other.serverPort())));
    stage.ask();
    QTRY_VERIFY(stage.result);
    QVERIFY(*stage.result && stage.api().port() != other.serverPort());
    QCOMPARE(readFile(stage.directory.filePath(u"service/port"_s)).trimmed(), QByteArray::number(stage.api().port()));
  }

  void endsWithItsOwner() {
    auto stage = std::make_unique<Stage>();
    stage->ask();
    QTRY_VERIFY(stage->result);
    const qint64 pid = stage->service.processId();
    stage.reset();
    QTRY_VERIFY(!isAlive(pid));
  }

  void saysWhatIsWrongWithTheProgram() {
    Stage missing(u"/nonexistent/vantle-service"_s);
    missing.ask();
    QVERIFY(missing.result && !*missing.result);
    QVERIFY(missing.result->error().description().contains(u"/nonexistent/vantle-service"_s));
    for (const QString& program : {u"/bin/true"_s, u"/bin/echo"_s}) {
      Stage wrong(program);
      wrong.ask();
      QTRY_VERIFY(wrong.result);
      QVERIFY(!*wrong.result && !wrong.service.isRunning());
    }
  }

  void anInstalledApplicationStartsItsOwnCopy() {
    const QTemporaryDir prefix;
    const QString programs = prefix.filePath(u"bin"_s);
    const QString beside = programs + u"/vantle-service"_s;
    const QString own = prefix.filePath(u"libexec/vantle/vantle-service"_s);
    QVERIFY(writeFile(beside, "another version") && writeFile(own, "not a program"));
    QCOMPARE(ServiceProcess::Places::programFor(programs), beside);
    QFile::setPermissions(own, QFile::ReadOwner | QFile::ExeOwner);
    QCOMPARE(ServiceProcess::Places::programFor(programs), own);
  }

  void aProgramThatSaysNothingIsNotWaitedForForEver() {
    const QTemporaryDir directory;
    const QString program = directory.filePath(u"silent"_s);
    QVERIFY(writeFile(program, "#!/bin/sh\nexec sleep 60\n"));
    QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    Stage stage(program);
    stage.ask();
    QTRY_VERIFY(stage.service.processId() > 0);
    QVERIFY(!stage.result);
    stage.clock.advance(10s);
    QTRY_VERIFY(stage.result);
    QVERIFY(!*stage.result);
  }
};

QTEST_GUILESS_MAIN(TestServiceProcess)
#include "test_service_process.moc"
