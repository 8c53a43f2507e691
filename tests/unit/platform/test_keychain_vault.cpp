#include <QElapsedTimer>
#include <QTest>

#include "platform/keychain_vault.h"

using namespace Qt::StringLiterals;

namespace {

/// The system's keychain; every call waits for its answer.
struct Stage {
  std::expected<QByteArray, CredentialError> read() {
    std::optional<std::expected<QByteArray, CredentialError>> result;
    vault->read(u"test"_s, job, [&](const auto& secret) { result = secret; });
    return wait(result);
  }
  std::expected<void, CredentialError> write(const QByteArray& secret) {
    std::optional<std::expected<void, CredentialError>> result;
    vault->write(u"test"_s, secret, job, [&](const auto& written) { result = written; });
    return wait(result);
  }
  std::expected<void, CredentialError> remove() {
    std::optional<std::expected<void, CredentialError>> result;
    vault->remove(u"test"_s, job, [&](const auto& removed) { result = removed; });
    return wait(result);
  }
  template <class Result>
  static Result wait(std::optional<Result>& result) {
    if (!QTest::qWaitFor([&] { return result.has_value(); }, 10'000)) return std::unexpected(CredentialError{});
    return *result;
  }

  std::unique_ptr<CredentialVault> vault = makeKeychainVault();
  Job job = Job::start();
};

}  // namespace

/// Runs on a session bus of its own, with the keyring that VANTLE_KEYRING names: "open", "locked" or "none".
class TestKeychainVault : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void keepsReplacesAndForgets() {
    if (qgetenv("VANTLE_KEYRING") != "open") QSKIP("needs a keyring that is open");
    Stage stage;
    QCOMPARE(stage.read(), QByteArray());
    const QByteArray odd("a\0b\xff \n\"", 8);
    QVERIFY(stage.write(odd));
    QCOMPARE(stage.read(), odd);
    QVERIFY(stage.write("second"));
    QCOMPARE(stage.read(), QByteArray("second"));
    QVERIFY(stage.remove());
    QVERIFY(stage.remove());
    QCOMPARE(stage.read(), QByteArray());
  }

  void saysWhyNothingCanBeKept() {
    const QByteArray keyring = qgetenv("VANTLE_KEYRING");
    if (keyring == "open") QSKIP("needs a keyring that is not open");
    Stage stage;
    QElapsedTimer timer;
    timer.start();
    const auto written = stage.write("secret");
    QVERIFY(!written);
    // A daemon whose keyring was never made says that there is none; one that is closed, that it is.
    const bool isKnown = written.error().reason == CredentialError::Reason::noKeychain ||
                         (keyring == "locked" && written.error().reason == CredentialError::Reason::denied);
    QVERIFY2(isKnown, qPrintable(written.error().description()));
    QVERIFY(!written.error().description().contains(u"secret"_s));
    // Whoever waits for a bus that does not answer waits for 25 s.
    QVERIFY2(timer.elapsed() < 10'000, qPrintable(u"%1 ms"_s.arg(timer.elapsed())));
  }

  void isSilentAfterTheEndOfTheJob() {
    Stage stage;
    int answers = 0;
    stage.vault->read(u"test"_s, stage.job, [&](const auto&) { ++answers; });
    stage.job = Job::start();
    // A second answer, which comes after the first would have.
    const auto second = stage.read();
    // That nothing is there, where anything could be.
    QCOMPARE(second.has_value(), qgetenv("VANTLE_KEYRING") != "none");
    QCOMPARE(answers, 0);
  }
};

QTEST_GUILESS_MAIN(TestKeychainVault)
#include "test_keychain_vault.moc"
