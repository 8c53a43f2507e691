#include <QJsonDocument>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

#include <memory>

#include "core/settings/app_preferences.h"
#include "core/settings/app_settings.h"
#include "core/settings/folders.h"
#include "support/files.h"
#include "support/full_disk.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TestSettings : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    directory_ = std::make_unique<QTemporaryDir>();
    path_ = directory_->filePath(u"settings.json"_s);
  }

  void everyKeyIsOptionalOnItsOwn() {
    writeFile(path_, R"({"toolSortMode":"recent"})");
    const SettingsStore store(path_);
    AppSettings expected;
    expected.toolSortMode = u"recent"_s;
    QVERIFY(store.value() == expected);
  }

  void savesAtOnceSortedIndentedAndPrivate() {
    const QString nested = directory_->filePath(u"a/b/settings.json"_s);
    SettingsStore store(nested);
    QSignalSpy changes(&store, &StoreBase::changed);
    store.update([](AppSettings& settings) {
      settings.toolUsage[u"uplink"_s] = 3;
      settings.toolLastUsed[u"uplink"_s] = 1'700'000'000.25;
    });
    const QByteArray first = readFile(nested);
    QVERIFY(first.indexOf("\"disabledTools\"") < first.indexOf("\"hotkeys\""));
    QVERIFY(first.contains("\n    \"toolUsage\""));
    QCOMPARE(QFile::permissions(nested) & QFile::Permissions(0x0fff), QFile::Permissions(0x0600));
    QCOMPARE(QFile::permissions(QFileInfo(nested).path()) & QFile::Permissions(0x00ff), QFile::Permissions());
    store.update([](AppSettings&) {});
    QCOMPARE(changes.size(), 1);
    store.update([](AppSettings& settings) { settings.privacyAccepted = true; });
    store.update([](AppSettings& settings) { settings.privacyAccepted = false; });
    QCOMPARE(readFile(nested), first);
    QVERIFY(SettingsStore(nested).value() == store.value());
  }

  void heldSavesAreWrittenOnceAtTheEnd() {
    SettingsStore store(path_);
    {
      const StoreBase::HeldSaves held(store);
      store.update([](AppSettings& settings) { settings.toolUsage[u"uplink"_s] = 1; });
      QVERIFY(!QFile::exists(path_));
      QCOMPARE(store.value().toolUsage.at(u"uplink"_s), 1);
    }
    QCOMPARE(SettingsStore(path_).value().toolUsage.at(u"uplink"_s), 1);
    store.update([](AppSettings& settings) { settings.toolUsage.clear(); });
    QVERIFY(SettingsStore(path_).value().toolUsage.empty());
  }

  void unknownKeysOfANewerVersionSurvive() {
    writeFile(path_, R"({"fromTheFuture":{"a":[1]},"toolOrder":["x"]})");
    SettingsStore store(path_);
    store.update([](AppSettings& settings) { settings.toolOrder.append(u"y"_s); });
    const QJsonObject object = QJsonDocument::fromJson(readFile(path_)).object();
    QCOMPARE(object["fromTheFuture"_L1]["a"_L1][0].toInt(), 1);
    QVERIFY(!QFile::exists(path_ + u".corrupt"_s));
  }

  void whatIsNotUnderstoodIsKeptBeside_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("not json") << QByteArray("{\"toolOrder\": [");
    QTest::newRow("an array") << QByteArray("[1,2]");
    QTest::newRow("binary") << QByteArray("\0\xff\xfe", 3);
    QTest::newRow("wrong types") << QByteArray(
        R"({"toolOrder":5,"pinnedTools":["a",7],"hotkeys":{"a":{"keyCode":"x"},"b":{"keyCode":1,"carbonModifiers":2}},
            "toolUsage":[],"privacyAccepted":"yes","onboardingCompleted":true})");
  }
  void whatIsNotUnderstoodIsKeptBeside() {
    QFETCH(QByteArray, bytes);
    writeFile(path_, bytes);
    writeFile(path_ + u".corrupt"_s, "an older one");
    SettingsStore store(path_);
    if (bytes.contains("pinned")) {
      QCOMPARE(store.value().pinnedTools, QStringList{u"a"_s});
      QCOMPARE(store.value().hotkeys.size(), std::size_t{1});
      QVERIFY(store.value().onboardingCompleted && !store.value().privacyAccepted);
    }
    QCOMPARE(readFile(path_), bytes);
    store.update([](AppSettings& settings) { settings.toolSortMode = u"recent"_s; });
    QCOMPARE(readFile(path_ + u".corrupt-2"_s), bytes);
    QCOMPARE(readFile(path_ + u".corrupt"_s), "an older one");
    QCOMPARE(SettingsStore(path_).value().toolSortMode, u"recent"_s);
    store.update([](AppSettings& settings) { settings.toolSortMode.clear(); });
    QVERIFY(!QFile::exists(path_ + u".corrupt-3"_s));
  }

  void folderInItsPlaceIsSetAside() {
    writeFile(path_ + u"/inside"_s, "kept");
    SettingsStore store(path_);
    store.update([](AppSettings& settings) { settings.privacyAccepted = true; });
    QVERIFY(SettingsStore(path_).value().privacyAccepted);
    QCOMPARE(readFile(path_ + u".corrupt/inside"_s), "kept");
  }

  void failedSaveIsLoggedAndTheMemoryStays() {
    writeFile(directory_->filePath(u"file"_s), "x");
    SettingsStore store(directory_->filePath(u"file/settings.json"_s));
    AppPreferences preferences(directory_->filePath(u"file/app-settings.json"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^SettingsStore save failed: .*settings.json: "_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^AppSettings save failed: .*app-settings.json: "_s));
    store.update([](AppSettings& settings) { settings.privacyAccepted = true; });
    preferences.update([](Preferences& values) { values.swipeToDismiss = false; });
    QVERIFY(store.value().privacyAccepted && !preferences.value().swipeToDismiss);
  }

  void fullDiskLeavesTheOldFileWhole() {
    SettingsStore store(path_);
    store.update([](AppSettings& settings) { settings.toolSortMode = u"recent"_s; });
    const QByteArray old = readFile(path_);
    {
      const SmallestFiles fullDisk;
      QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^SettingsStore save failed: "_s));
      store.update([](AppSettings& settings) { settings.toolSortMode = u"manual"_s; });
    }
    QCOMPARE(readFile(path_), old);
    QCOMPARE(QDir(directory_->path()).entryList(QDir::Files).size(), 1);
    store.update([](AppSettings& settings) { settings.privacyAccepted = true; });
    QCOMPARE(SettingsStore(path_).value().toolSortMode, u"manual"_s);
  }

  void unreadableFileAndReadOnlyFolderLoseNothing() {
    if (geteuid() == 0) QSKIP("root may read and write everything");
    writeFile(path_, R"({"toolSortMode":"recent"})");
    QFile::setPermissions(path_, QFile::Permissions());
    SettingsStore unreadable(path_);
    QVERIFY(unreadable.value().toolSortMode.isEmpty());
    unreadable.update([](AppSettings& settings) { settings.privacyAccepted = true; });
    QFile::setPermissions(path_ + u".corrupt"_s, QFile::ReadOwner);
    QVERIFY(readFile(path_ + u".corrupt"_s).contains("recent"));

    const QByteArray before = readFile(path_);
    QFile::setPermissions(directory_->path(), QFile::ReadOwner | QFile::ExeOwner);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^SettingsStore save failed: "_s));
    unreadable.update([](AppSettings& settings) { settings.toolSortMode = u"manual"_s; });
    QFile::setPermissions(directory_->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QCOMPARE(readFile(path_), before);
  }

  void preferencesHaveTheirDefaultsAndBounds() {
    const AppPreferences fresh(directory_->filePath(u"app-settings.json"_s));
    QCOMPARE(fresh.value().toastDuration, 10.0);
    QVERIFY(fresh.value().swipeToDismiss && fresh.value().soundOnComplete && !fresh.value().shareUsageStats);
    writeFile(path_, R"({"appearance":"light","toastDuration":-4})");
    const AppPreferences odd(path_);
    QCOMPARE(odd.value().appearance, AppAppearance::system);
    QCOMPARE(toastDuration(odd.value()), 2s);
    QCOMPARE(toastDuration({.toastDuration = 1e300}), 60s);
    QCOMPARE(toastDuration({.toastDuration = 4.5}), 4500ms);
  }

  void legacyFolderMovesOnceTheYoungerFirst() {
    const Folders folders{directory_->path()};
    QDir root(directory_->path());
    folders.migrateLegacyFolder();
    QVERIFY(!root.exists(u"Vantle"_s));
    root.mkdir(u"Brindle"_s);
    writeFile(root.filePath(u"QuarnelForMac/settings.json"_s), "{}");
    folders.migrateLegacyFolder();
    QVERIFY(root.exists(u"Vantle/settings.json"_s) && root.exists(u"Brindle"_s) && !root.exists(u"QuarnelForMac"_s));
    folders.migrateLegacyFolder();
    QVERIFY(root.exists(u"Brindle"_s));
  }

 private:
  std::unique_ptr<QTemporaryDir> directory_;
  QString path_;
};

QTEST_GUILESS_MAIN(TestSettings)
#include "test_settings.moc"
