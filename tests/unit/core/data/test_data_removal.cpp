#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

#include "core/data/data_removal.h"
#include "support/files.h"

using namespace Qt::StringLiterals;

class TestDataRemoval : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    directory_ = std::make_unique<QTemporaryDir>();
    folders_ = {directory_->filePath(u"data"_s)};
    defaults_ = directory_->filePath(u"config/Vantle/Vantle.ini"_s);
    QVERIFY(writeFile(folders_.file(u"settings.json"_s), "{}"));
    QVERIFY(writeFile(folders_.file(u"FrequentCLIs/commands.json"_s), "[]"));
    QVERIFY(writeFile(defaults_, "[General]"));
    QVERIFY(writeFile(outside(), "not ours"));
  }

  void removesAllOfItAndNothingElse() {
    QVERIFY(writeFile(directory_->filePath(u"data/Brindle/settings.json"_s), "{}"));
    QVERIFY(QFile::link(directory_->filePath(u"elsewhere"_s), folders_.file(u"link"_s)));
    QVERIFY(QFile::link(folders_.vantle(), folders_.file(u"loop"_s)));
    QCOMPARE(mkfifo(QFile::encodeName(folders_.file(u"pipe"_s)).constData(), 0600), 0);
    const QString locked = folders_.file(u"FrequentCLIs"_s);
    QFile::setPermissions(locked, QFile::Permissions());
    QVERIFY(removal().check() && removal().putAside());
    // Whenever the process dies now, the next start finds no data, and none of an earlier version moves in.
    QVERIFY(content(folders_.vantle()).isEmpty());
    folders_.migrateLegacyFolder();
    QVERIFY(removal().finish());
    QCOMPARE(content(folders_.applicationSupport), (QStringList{u"Brindle"_s, u"Vantle"_s}));
    QVERIFY(content(folders_.vantle()).isEmpty());
    QVERIFY(!QFileInfo::exists(directory_->filePath(u"config/Vantle"_s)));
    QCOMPARE(readFile(outside()), "not ours");
  }

  void aDeletionThatWasCutShortEndsAtTheNextStart() {
    QVERIFY(removal().putAside());
    QVERIFY(writeFile(folders_.file(u"settings.json"_s), "new"));
    QVERIFY(removal().finish());
    QCOMPARE(content(folders_.applicationSupport), QStringList{u"Vantle"_s});
    QCOMPARE(readFile(folders_.file(u"settings.json"_s)), "new");
    QVERIFY(writeFile(defaults_, "[General]"));
    QVERIFY(removal().finish());
    QVERIFY(QFile::exists(defaults_));
  }

  void twoDeletionsInARowLeaveNothing() {
    QVERIFY(removal().putAside());
    QVERIFY(writeFile(folders_.file(u"settings.json"_s), "new"));
    QVERIFY(removal().putAside());
    QVERIFY(removal().finish());
    QCOMPARE(content(folders_.applicationSupport), QStringList{u"Vantle"_s});
    QVERIFY(content(folders_.vantle()).isEmpty());
  }

  void aLinkInItsPlaceIsNotFollowed() {
    const QString real = directory_->filePath(u"elsewhere/real"_s);
    QVERIFY(QDir().rename(folders_.vantle(), real) && QFile::link(real, folders_.vantle()));
    const auto refused = removal().check();
    QVERIFY(!refused && refused.error().kind == DataRemovalError::Kind::link);
    QVERIFY(refused.error().description().contains(folders_.vantle()));
    QVERIFY(!removal().putAside() && removal().finish());
    QVERIFY(QFile::exists(real + u"/settings.json"_s) && QFile::exists(defaults_));
  }

  void whatStandsInTheWayIsSaidBefore() {
    QVERIFY(QDir(folders_.vantle()).removeRecursively() && writeFile(folders_.vantle(), "a file"));
    QVERIFY(!removal().check() && !removal().putAside());
    QCOMPARE(readFile(folders_.vantle()), "a file");
    folders_.applicationSupport = directory_->filePath(u"nowhere"_s);
    QVERIFY(!removal().check());
  }

  void aLinkNamedAsWhatWasPutAsideIsNotFollowed() {
    QVERIFY(
        QFile::link(directory_->filePath(u"elsewhere"_s), folders_.applicationSupport + u"/.vantle-deleted-data"_s));
    QVERIFY(removal().finish());
    QCOMPARE(readFile(outside()), "not ours");
  }

 private:
  DataRemoval removal() const { return {folders_, defaults_}; }
  QString outside() const { return directory_->filePath(u"elsewhere/file"_s); }
  static QStringList content(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
  }

  std::unique_ptr<QTemporaryDir> directory_;
  Folders folders_;
  QString defaults_;
};

QTEST_GUILESS_MAIN(TestDataRemoval)
#include "test_data_removal.moc"
