#include <QTemporaryDir>
#include <QTest>

#include "app/data_eraser.h"
#include "support/fake_presenters.h"
#include "support/files.h"

using namespace Qt::StringLiterals;

namespace {

/// Answers when it is told to.
class SlowVault final : public CredentialVault {
 public:
  void remove(const QString& account, const JobRef& job, Done done) override {
    removed.append(account);
    answer = job.bind(std::move(done));
  }
  QStringList removed;
  Done answer;
};

class OpenAtLogin final : public LoginItem {
 public:
  State state() const override { return on ? State::on : State::off; }
  std::expected<void, LoginItemError> setEnabled(bool enabled) override {
    if (!refusal.isEmpty()) return std::unexpected(LoginItemError{refusal});
    on = enabled;
    return {};
  }
  bool on = true;
  QString refusal;
};

struct Stage {
  QTemporaryDir directory;
  Folders folders{directory.path()};
  SlowVault vault;
  OpenAtLogin loginItem;
  FakeFreshStart freshStart;
  DataEraser eraser{{vault, loginItem, freshStart},
                    DataRemoval(folders, directory.filePath(u"defaults.ini"_s)),
                    {u"one"_s, u"two"_s}};
  QStringList refusals;

  Stage() { writeFile(folders.file(u"settings.json"_s), "{}"); }
  void erase() {
    eraser.erase([this](const QString& reason) { refusals.append(reason); });
  }
};

}  // namespace

class TestDataEraser : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void takesBackWhatIsKeptElsewhereFirst() {
    Stage stage;
    stage.erase();
    stage.erase();
    QCOMPARE(stage.vault.removed, QStringList{u"one"_s});
    stage.vault.answer({});
    stage.vault.answer(std::unexpected(CredentialError{CredentialError::Reason::noKeychain, {}}));
    QCOMPARE(stage.vault.removed, (QStringList{u"one"_s, u"two"_s}));
    QVERIFY(!stage.loginItem.on);
    QCOMPARE(stage.freshStart.starts, 1);
    QVERIFY(stage.refusals.isEmpty() && !stage.eraser.isErasing());
  }

  void aRefusalDeletesNothing() {
    Stage stage;
    stage.erase();
    stage.vault.answer(std::unexpected(CredentialError{CredentialError::Reason::denied, {}}));
    QCOMPARE(stage.refusals.size(), 1);
    QVERIFY(stage.refusals.last().contains(u"Unlock it"_s));
    QVERIFY(stage.loginItem.on && !stage.eraser.isErasing());

    stage.loginItem.refusal = u"Permission denied"_s;
    stage.erase();
    stage.vault.answer({});
    stage.vault.answer({});
    QVERIFY(stage.refusals.last().contains(u"Permission denied"_s));

    QVERIFY(QDir(stage.folders.vantle()).removeRecursively() && QFile::link(u"/"_s, stage.folders.vantle()));
    stage.vault.removed.clear();
    stage.erase();
    QVERIFY(stage.refusals.last().contains(u"is a link"_s));
    QVERIFY(stage.vault.removed.isEmpty());
    QCOMPARE(stage.freshStart.starts, 0);
    QVERIFY(QFile::remove(stage.folders.vantle()));
  }

  void aLateAnswerDoesNothing() {
    Stage stage;
    stage.erase();
    stage.eraser.cancel();
    stage.vault.answer({});
    QCOMPARE(stage.vault.removed.size(), 1);
    QCOMPARE(stage.freshStart.starts, 0);
  }
};

QTEST_GUILESS_MAIN(TestDataEraser)
#include "test_data_eraser.moc"
