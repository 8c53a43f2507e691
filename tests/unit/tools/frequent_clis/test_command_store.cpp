#include "tools/frequent_clis/command_store.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "support/fake_clock.h"
#include "support/files.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kFirstID = "6F9619FF-8B86-D011-B42D-00CF4FC964FF"_L1;

QByteArray stored(QLatin1StringView rest, QLatin1StringView id = kFirstID) {
  return R"({"id": ")" + QByteArray(id.data(), id.size()) + R"(", )" + QByteArray(rest.data(), rest.size()) + "}";
}

const QByteArray kGood = stored(R"("title": "List", "command": "ls", "pressReturn": true, "icon": "aws")"_L1);

/// Half a pair; moc cannot read this text inside the class.
const QByteArray kHalf = stored(R"("title": "half", "command": "a\ud83d\u001b[0m", "pressReturn": false)"_L1);

QByteArray oneWith(QLatin1StringView rest) { return "[" + stored(rest) + "]"; }

QStringList titles(const CommandStore& store) {
  QStringList titles;
  for (const CLICommand& command : store.commands()) titles.append(command.title);
  return titles;
}

const QStringList kDefaultTitles{u"Claude — skip permissions"_s, u"Codex — YOLO"_s};

}  // namespace

class CommandStoreTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    dir_ = std::make_unique<QTemporaryDir>();
    folders_ = {dir_->path()};
  }

  void firstRunWritesTheDefaults() {
    CommandStore store(folders_, clock_);
    QCOMPARE(titles(store), kDefaultTitles);
    QCOMPARE(store.commands()[0].command, u"claude --dangerously-skip-permissions"_s);
    QCOMPARE(store.commands()[1].command, u"codex --yolo"_s);
    QVERIFY(store.commands()[0].id != store.commands()[1].id);

    clock_.advance(499ms);
    QVERIFY(!QFile::exists(file()));
    clock_.advance(1ms);
    QCOMPARE(savedArray().size(), 2);
    QCOMPARE(savedArray()[1].toObject()["icon"_L1].toString(), u"codex"_s);
    QVERIFY(!QFile::exists(file() + ".corrupt"_L1));
  }

  void legacyFileIsMovedOnce() {
    writeFile(legacyFile(), "[" + kGood + "]");
    QCOMPARE(titles(CommandStore(folders_, clock_)), QStringList(u"List"_s));
    QVERIFY(!QFile::exists(legacyFile()));
    QVERIFY(QFile::exists(file()));

    writeFile(legacyFile(), "[]");
    QCOMPARE(titles(CommandStore(folders_, clock_)), QStringList(u"List"_s));
    QCOMPARE(readFile(legacyFile()), QByteArray("[]"));
  }

  void failedMigrationLeavesTheLegacyFile() {
    writeFile(legacyFile(), "[" + kGood + "]");
    writeFile(folders_.file(u"FrequentCLIs"_s), "a file where the folder belongs");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^CommandStore migration failed: ."_s));
    const CommandStore store(folders_, clock_);
    QCOMPARE(titles(store), kDefaultTitles);
    QCOMPARE(readFile(legacyFile()), "[" + kGood + "]");
  }

  void storedCommandsAreReadInOrder() {
    const auto withoutIcon = stored(R"("title": "A", "command": "gemini -p hi", "pressReturn": false)"_L1,
                                    "11111111-8b86-d011-b42d-00cf4fc964ff"_L1);
    writeFile(file(), "[" + kGood + "," + withoutIcon + "]");
    CommandStore store(folders_, clock_);
    QCOMPARE(store.commands()[0],
             (CLICommand{QUuid::fromString(kFirstID), u"List"_s, u"ls"_s, true, std::optional(u"aws"_s)}));
    QCOMPARE(titles(store).last(), u"A"_s);
    QCOMPARE(store.commands()[1].icon, u"gemini"_s);

    clock_.advance(500ms);
    QCOMPARE(savedArray()[0].toObject()["id"_L1].toString(), kFirstID);
    QCOMPARE(savedArray()[1].toObject()["icon"_L1].toString(), u"gemini"_s);
  }

  void unusableFileGivesDefaultsAndIsKept() {
    const QByteArray noID = stored(R"("title": "a", "command": "a", "pressReturn": false)"_L1, "42"_L1);
    for (const QByteArray& contents :
         {QByteArray(), QByteArray("{["), kGood, QByteArray(R"(["ls"])"), "[" + kGood + R"(, {"title": "x"}])",
          "[" + noID + "]", oneWith(R"("title": 1, "command": "a", "pressReturn": false)"_L1),
          oneWith(R"("title": "a", "command": "a", "pressReturn": "no")"_L1),
          oneWith(R"("title": "a", "command": "a", "pressReturn": false, "icon": 3)"_L1),
          oneWith(R"("title": "a", "command": null, "pressReturn": false)"_L1)}) {
      init();
      writeFile(file(), contents);
      const CommandStore store(folders_, clock_);
      QVERIFY2(titles(store) == kDefaultTitles, contents.constData());
      clock_.advance(500ms);
      QCOMPARE(savedArray().size(), 2);
      QCOMPARE(readFile(file() + ".corrupt"_L1), contents);
    }
  }

  void emptyListBringsTheDefaultsBack() {
    writeFile(file(), "[]");
    CommandStore store(folders_, clock_);
    QCOMPARE(titles(store), kDefaultTitles);
    clock_.advance(500ms);
    QCOMPARE(savedArray().size(), 2);
    QVERIFY(!QFile::exists(file() + ".corrupt"_L1));

    store.setCommands({});
    clock_.advance(500ms);
    QCOMPARE(savedArray(), QJsonArray());
  }

  void commandsUnderOneIdAreToldApart() {
    const auto nil =
        stored(R"("title": "nil", "command": "", "pressReturn": false)"_L1, "00000000-0000-0000-0000-000000000000"_L1);
    writeFile(file(), "[" + kGood + "," + kGood + "," + nil + "]");
    CommandStore store(folders_, clock_);
    QCOMPARE(titles(store), QStringList({u"List"_s, u"List"_s, u"nil"_s}));
    QCOMPARE(store.commands()[0].id, QUuid::fromString(kFirstID));
    QVERIFY(store.commands()[1].id != store.commands()[0].id);
    QVERIFY(!store.commands()[2].id.isNull());
  }

  void keysOfANewerVersionSurvive() {
    writeFile(file(), "[" + stored(R"("title": "a", "command": "a", "pressReturn": false, "group": ["x"])"_L1) + "]");
    CommandStore store(folders_, clock_);
    auto commands = store.commands();
    commands[0].title = u"b"_s;
    store.setCommands(commands);
    clock_.advance(500ms);
    QCOMPARE(savedArray()[0].toObject()["title"_L1].toString(), u"b"_s);
    QCOMPARE(savedArray()[0].toObject()["group"_L1].toArray(), QJsonArray({u"x"_s}));
  }

  void hugeAndBrokenTextsSurvive() {
    const QString huge(1 << 20, u'x');
    writeFile(file(), "[" + kHalf + "]");
    CommandStore store(folders_, clock_);
    QCOMPARE(store.commands()[0].command, u"a"_s + QChar(0xD83D) + u"\u001b[0m"_s);
    const QUuid id = store.add();
    store.replace({id, huge, huge, false, std::nullopt});
    clock_.advance(500ms);

    // UTF-8 cannot hold the half, so the bytes that had it are kept.
    QCOMPARE(readFile(file() + ".corrupt"_L1), "[" + kHalf + "]");
    const CommandStore again(folders_, clock_);
    QCOMPARE(again.commands()[1].command, huge);
  }

  void editsWithinTheDelayMakeOneWrite() {
    CommandStore store(folders_, clock_);
    clock_.advance(500ms);
    for (int edit = 0; edit < 10; ++edit) {
      // A write in between would bring the file back.
      QFile::remove(file());
      store.add();
      clock_.advance(40ms);
      QVERIFY(!QFile::exists(file()));
    }
    clock_.advance(459ms);
    QVERIFY(!QFile::exists(file()));
    clock_.advance(1ms);
    QCOMPARE(savedArray().size(), 12);
  }

  void editsKeepTheOtherCommands() {
    CommandStore store(folders_, clock_);
    QSignalSpy changes(&store, &CommandStore::changed);
    const QUuid id = store.add();
    QCOMPARE(*store.find(id), (CLICommand{id, u"New Command"_s, {}, false, std::nullopt}));

    store.move(id, 0);
    QCOMPARE(titles(store), QStringList({u"New Command"_s, kDefaultTitles[0], kDefaultTitles[1]}));
    store.move(id, 1);
    QCOMPARE(titles(store), QStringList({kDefaultTitles[0], u"New Command"_s, kDefaultTitles[1]}));
    store.move(id, 99);
    QCOMPARE(titles(store), QStringList({kDefaultTitles[0], kDefaultTitles[1], u"New Command"_s}));
    QCOMPARE(changes.size(), 4);

    store.replace(*store.find(id));
    store.replace({QUuid::createUuid(), u"stranger"_s, {}, false, std::nullopt});
    store.move(QUuid::createUuid(), 0);
    store.remove(QUuid::createUuid());
    QCOMPARE(changes.size(), 4);
    store.remove(id);
    QCOMPARE(titles(store), kDefaultTitles);
  }

  void terminationWritesWhatIsPending() {
    CommandStore store(folders_, clock_);
    store.add();
    store.save();
    QCOMPARE(savedArray().size(), 3);
    QFile::remove(file());
    clock_.advance(1s);
    QVERIFY2(!QFile::exists(file()), "the pending save is done with");
  }

  void failedSaveIsLoggedAndTriedAgain() {
    CommandStore store(folders_, clock_);
    writeFile(folders_.file(u"FrequentCLIs"_s), "a file where the folder belongs");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^CommandStore save failed: ."_s));
    clock_.advance(500ms);
    QCOMPARE(store.commands().size(), 2U);

    QFile::remove(folders_.file(u"FrequentCLIs"_s));
    store.add();
    clock_.advance(500ms);
    QCOMPARE(savedArray().size(), 3);
  }

 private:
  QString file() const { return folders_.file(u"FrequentCLIs/commands.json"_s); }
  QString legacyFile() const { return folders_.file(u"commands.json"_s); }
  QJsonArray savedArray() const { return QJsonDocument::fromJson(readFile(file())).array(); }

  std::unique_ptr<QTemporaryDir> dir_;
  Folders folders_;
  FakeClock clock_;
};

QTEST_GUILESS_MAIN(CommandStoreTest)
#include "test_command_store.moc"
