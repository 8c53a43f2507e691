#include <QSignalSpy>
#include <QTest>

#include "services/user_credential.h"
#include "support/fake_vault.h"

using namespace Qt::StringLiterals;

namespace {

/// A credential in a keychain in memory, and the last answer of either.
struct Stage {
  QByteArray read() {
    answer.clear();
    credential.read(job, [this](const auto& secret) { answer = secret ? *secret : "refused"; });
    QCoreApplication::processEvents();
    return answer;
  }
  void store(const QByteArray& secret) {
    credential.store(secret, job, [this](const auto& written) { isDone = written.has_value(); });
  }

  FakeVault vault;
  UserCredential credential{vault, u"api"_s};
  Job job = Job::start();
  QByteArray answer;
  bool isDone = false;
};

}  // namespace

class TestUserCredential : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void isReadOnceAndFollowsChanges() {
    Stage stage;
    stage.vault.secrets[u"api"_s] = "first";
    QCOMPARE(stage.read(), "first");
    QCOMPARE(stage.read(), "first");
    QCOMPARE(stage.vault.reads, 1);

    QSignalSpy changes(&stage.credential, &UserCredential::changed);
    stage.store("second");
    QCoreApplication::processEvents();
    QVERIFY(stage.isDone);
    QCOMPARE(stage.vault.secrets.at(u"api"_s), "second");
    QCOMPARE(stage.read(), "second");
    stage.credential.remove(stage.job, [](const auto&) {});
    QCoreApplication::processEvents();
    QCOMPARE(stage.read(), "");
    QCOMPARE(stage.vault.reads, 1);
    QCOMPARE(changes.size(), 2);
    QVERIFY(stage.vault.secrets.empty());
  }

  void aRefusalIsNotRemembered() {
    Stage stage;
    stage.vault.error = CredentialError{CredentialError::Reason::denied, {}};
    QCOMPARE(stage.read(), "refused");
    stage.store("lost");
    QCoreApplication::processEvents();
    QVERIFY(!stage.isDone);
    stage.vault.error.reset();
    stage.vault.secrets[u"api"_s] = "kept";
    QCOMPARE(stage.read(), "kept");
  }

  void whatWasReadBeforeAChangeIsNotTakenForTheNewOne() {
    Stage stage;
    stage.vault.secrets[u"api"_s] = "old";
    QByteArray slow;
    stage.credential.read(stage.job, [&](const auto& secret) { slow = secret.value_or(QByteArray()); });
    stage.job = Job::start();  // the reader has lost interest; the keychain has not answered yet
    Job reader = Job::start();
    stage.credential.read(reader, [&](const auto& secret) { slow = secret.value_or(QByteArray()); });
    stage.vault.secrets[u"api"_s] = "old";
    stage.store("new");
    stage.job.cancel();  // nobody hears that it was written, or whether
    QCoreApplication::processEvents();
    QCOMPARE(slow, "old");
    stage.vault.secrets[u"api"_s] = "new";
    stage.job = Job::start();
    QCOMPARE(stage.read(), "new");
  }
};

QTEST_GUILESS_MAIN(TestUserCredential)
#include "test_user_credential.moc"
