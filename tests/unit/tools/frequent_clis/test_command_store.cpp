#include "tools/frequent_clis/command_store.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "support/fake_clock.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kFirstID = "6F9619FF-8B86-D011-B42D-00CF4FC964FF"_L1;

QByteArray stored(QLatin1StringView rest, QLatin1StringView id = kFirstID) {
  return R"({"id": ")" + QByteArray(id.data(), id.size()) + R"(", )" + QByteArray(rest.data(), rest.size()) + "}";
}

const QByteArray kGood = stored(R"("title": "List", "command": "ls", "pressReturn": true, "icon": "aws")"_L1);

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
  void init();
  void firstRunWritesTheDefaults();
  void legacyFileIsMovedOnce();
  void failedMigrationLeavesTheLegacyFile();
  void storedCommandsAreReadInOrder();
  void unusableFileGivesDefaultsAndIsKept_data();
  void unusableFileGivesDefaultsAndIsKept();
  void emptyListBringsTheDefaultsBack();
  void commandsUnderOneIdAreToldApart();
  void keysOfANewerVersionSurvive();
  void hugeAndBrokenTextsSurvive();
  void editsWithinTheDelayMakeOneWrite();
  void editsKeepTheOtherCommands();
  void terminationWritesWhatIsPending();
  void failedSaveIsLoggedAndTriedAgain();

 private:
  QString file() const { return folders_.file(u"FrequentCLIs/commands.json"_s); }
  QString legacyFile() const { return folders_.file(u"commands.json"_s); }
  static void write(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
  }
  static QByteArray read(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
  QJsonArray savedArray() const { return QJsonDocument::fromJson(read(file())).array(); }

  std::unique_ptr<QTemporaryDir> dir_;
  Folders folders_;
  FakeClock clock_;
};

void CommandStoreTest::init() {
  dir_ = std::make_unique<QTemporaryDir>();
  folders_ = {dir_->path()};
}

void CommandStoreTest::firstRunWritesTheDefaults() {
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

void CommandStoreTest::legacyFileIsMovedOnce() {
  write(legacyFile(), "[" + kGood + "]");
  QCOMPARE(titles(CommandStore(folders_, clock_)), QStringList(u"List"_s));
  QVERIFY(!QFile::exists(legacyFile()));
  QVERIFY(QFile::exists(file()));

  write(legacyFile(), "[]");
  QCOMPARE(titles(CommandStore(folders_, clock_)), QStringList(u"List"_s));
  QCOMPARE(read(legacyFile()), QByteArray("[]"));
}

void CommandStoreTest::failedMigrationLeavesTheLegacyFile() {
  write(legacyFile(), "[" + kGood + "]");
  write(folders_.file(u"FrequentCLIs"_s), "a file where the folder belongs");
  QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^CommandStore migration failed: ."_s));
  const CommandStore store(folders_, clock_);
  QCOMPARE(titles(store), kDefaultTitles);
  QCOMPARE(read(legacyFile()), "[" + kGood + "]");
}

void CommandStoreTest::storedCommandsAreReadInOrder() {
  const auto withoutIcon = stored(R"("title": "A", "command": "gemini -p hi", "pressReturn": false)"_L1,
                                  "11111111-8b86-d011-b42d-00cf4fc964ff"_L1);
  write(file(), "[" + kGood + "," + withoutIcon + "]");
  CommandStore store(folders_, clock_);
  QCOMPARE(store.commands()[0],
           (CLICommand{QUuid::fromString(kFirstID), u"List"_s, u"ls"_s, true, std::optional(u"aws"_s)}));
  QCOMPARE(titles(store).last(), u"A"_s);
  QCOMPARE(store.commands()[1].icon, u"gemini"_s);

  clock_.advance(500ms);
  QCOMPARE(savedArray()[0].toObject()["id"_L1].toString(), kFirstID);
  QCOMPARE(savedArray()[1].toObject()["icon"_L1].toString(), u"gemini"_s);
}

void CommandStoreTest::unusableFileGivesDefaultsAndIsKept_data() {
  QTest::addColumn<QByteArray>("contents");
  QTest::newRow("no bytes") << QByteArray();
  QTest::newRow("not JSON") << QByteArray("{[");
  QTest::newRow("an object") << kGood;
  QTest::newRow("list of texts") << QByteArray(R"(["ls"])");
  QTest::newRow("one bad among good ones") << "[" + kGood + R"(, {"title": "x"}])";
  QTest::newRow("number as title") << "[" + stored(R"("title": 1, "command": "a", "pressReturn": false)"_L1) + "]";
  QTest::newRow("text as switch") << "[" + stored(R"("title": "a", "command": "a", "pressReturn": "no")"_L1) + "]";
  QTest::newRow("number as icon") << "[" +
                                         stored(R"("title": "a", "command": "a", "pressReturn": false, "icon": 3)"_L1) +
                                         "]";
  QTest::newRow("null as command") << "[" + stored(R"("title": "a", "command": null, "pressReturn": false)"_L1) + "]";
  QTest::newRow("id that is none") << "[" +
                                          stored(R"("title": "a", "command": "a", "pressReturn": false)"_L1, "42"_L1) +
                                          "]";
}

void CommandStoreTest::unusableFileGivesDefaultsAndIsKept() {
  QFETCH(const QByteArray, contents);
  write(file(), contents);
  const CommandStore store(folders_, clock_);
  QCOMPARE(titles(store), kDefaultTitles);
  clock_.advance(500ms);
  QCOMPARE(savedArray().size(), 2);
  QCOMPARE(read(file() + ".corrupt"_L1), contents);
}

void CommandStoreTest::emptyListBringsTheDefaultsBack() {
  write(file(), "[]");
  CommandStore store(folders_, clock_);
  QCOMPARE(titles(store), kDefaultTitles);
  clock_.advance(500ms);
  QCOMPARE(savedArray().size(), 2);
  QVERIFY(!QFile::exists(file() + ".corrupt"_L1));

  store.setCommands({});
  clock_.advance(500ms);
  QCOMPARE(savedArray(), QJsonArray());
}

void CommandStoreTest::commandsUnderOneIdAreToldApart() {
  const auto nil =
      stored(R"("title": "nil", "command": "", "pressReturn": false)"_L1, "00000000-0000-0000-0000-000000000000"_L1);
  write(file(), "[" + kGood + "," + kGood + "," + nil + "]");
  CommandStore store(folders_, clock_);
  QCOMPARE(titles(store), QStringList({u"List"_s, u"List"_s, u"nil"_s}));
  QCOMPARE(store.commands()[0].id, QUuid::fromString(kFirstID));
  QVERIFY(store.commands()[1].id != store.commands()[0].id);
  QVERIFY(!store.commands()[2].id.isNull());
}

void CommandStoreTest::keysOfANewerVersionSurvive() {
  write(file(), "[" + stored(R"("title": "a", "command": "a", "pressReturn": false, "group": ["x"])"_L1) + "]");
  CommandStore store(folders_, clock_);
  auto commands = store.commands();
  commands[0].title = u"b"_s;
  store.setCommands(commands);
  clock_.advance(500ms);
  QCOMPARE(savedArray()[0].toObject()["title"_L1].toString(), u"b"_s);
  QCOMPARE(savedArray()[0].toObject()["group"_L1].toArray(), QJsonArray({u"x"_s}));
}

void CommandStoreTest::hugeAndBrokenTextsSurvive() {
  const QString huge(1 << 20, u'x');
  const auto half = stored(R"("title": "half", "command": "a\ud83d\u001b[0m", "pressReturn": false)"_L1);
  write(file(), "[" + half + "]");
  CommandStore store(folders_, clock_);
  QCOMPARE(store.commands()[0].command, u"a"_s + QChar(0xD83D) + u"\u001b[0m"_s);
  const QUuid id = store.add();
  store.replace({id, huge, huge, false, std::nullopt});
  clock_.advance(500ms);

  // UTF-8 cannot hold the half, so the bytes that had it are kept.
  QCOMPARE(read(file() + ".corrupt"_L1), "[" + half + "]");
  const CommandStore again(folders_, clock_);
  QCOMPARE(again.commands()[1].command, huge);
}

void CommandStoreTest::editsWithinTheDelayMakeOneWrite() {
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

void CommandStoreTest::editsKeepTheOtherCommands() {
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

void CommandStoreTest::terminationWritesWhatIsPending() {
  CommandStore store(folders_, clock_);
  store.add();
  store.save();
  QCOMPARE(savedArray().size(), 3);
  QFile::remove(file());
  clock_.advance(1s);
  QVERIFY2(!QFile::exists(file()), "the pending save is done with");
}

void CommandStoreTest::failedSaveIsLoggedAndTriedAgain() {
  CommandStore store(folders_, clock_);
  write(folders_.file(u"FrequentCLIs"_s), "a file where the folder belongs");
  QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^CommandStore save failed: ."_s));
  clock_.advance(500ms);
  QCOMPARE(store.commands().size(), 2U);

  QFile::remove(folders_.file(u"FrequentCLIs"_s));
  store.add();
  clock_.advance(500ms);
  QCOMPARE(savedArray().size(), 3);
}

QTEST_GUILESS_MAIN(CommandStoreTest)
#include "test_command_store.moc"
