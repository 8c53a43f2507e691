#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include "core/data/data_export.h"
#include "support/files.h"
#include "support/full_disk.h"

using namespace Qt::StringLiterals;

using Kind = DataExportError::Kind;

class TestDataExport : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    directory_ = std::make_unique<QTemporaryDir>();
    data_ = directory_->filePath(u"data/Vantle"_s);
    destination_ = directory_->filePath(u"out"_s);
    QVERIFY(QDir().mkpath(destination_));
    QVERIFY(writeFile(data_ + u"/settings.json"_s, R"({"toolSortMode":"recent"})"));
    QVERIFY(writeFile(data_ + u"/FrequentCLIs/commands.json"_s, QByteArray(700'000, 'x')));
  }

  void copiesEverythingUnderANewNameEachTime() {
    QVERIFY(writeFile(data_ + u"/.hidden/Größe"_s, "1"));
    const auto first = exportNow();
    QVERIFY(first);
    QCOMPARE(first->folder, destination_ + u"/Vantle export 2026-11-21"_s);
    QCOMPARE(first->files, 3);
    QVERIFY(first->leftOut.isEmpty());
    QCOMPARE(readFile(first->folder + u"/FrequentCLIs/commands.json"_s).size(), 700'000);
    QCOMPARE(readFile(first->folder + u"/.hidden/Größe"_s), "1");
    QCOMPARE(QFile::permissions(first->folder) & QFile::Permissions(0x00ff), QFile::Permissions());
    QVERIFY(QFile::link(u"nowhere"_s, destination_ + u"/Vantle export 2026-11-21 2"_s));
    QCOMPARE(exportNow()->folder, destination_ + u"/Vantle export 2026-11-21 3"_s);
    QCOMPARE(content(destination_).size(), 3);
  }

  void credentialsStayBehind() {
    writeFile(data_ + u"/services.json"_s,
              R"({"api":"one.example","token":"secret-1","provider":[{"apiKey":"secret-2","model":"m"}]})");
    writeFile(data_ + u"/Uplink/config.json"_s, R"({"endpoint":"two.example","token":"secret-3"})");
    writeFile(data_ + u"/Uplink/config.json.corrupt"_s, R"({"token":"secret-4")");
    writeFile(data_ + u"/Feedback/config.json"_s, "secret-5");
    writeFile(data_ + u"/typing-permission"_s, "secret-6");
    const auto exported = exportNow();
    QVERIFY(exported);
    QStringList leftOut = exported->leftOut;
    leftOut.sort();
    QCOMPARE(leftOut,
             (QStringList{u"Feedback/config.json"_s, u"Uplink/config.json.corrupt"_s, u"typing-permission"_s}));
    const QByteArray services = readFile(exported->folder + u"/services.json"_s);
    const QJsonObject object = QJsonDocument::fromJson(services).object();
    QVERIFY(object.contains("token"_L1) && !services.contains("secret"));
    QCOMPARE(object["api"_L1].toString(), u"one.example"_s);
    QCOMPARE(object["provider"_L1][0]["model"_L1].toString(), u"m"_s);
    QVERIFY(!readFile(exported->folder + u"/Uplink/config.json"_s).contains("secret"));
  }

  void whatIsNoPlainFileIsLeftOut() {
    QVERIFY(QFile::link(data_, data_ + u"/loop"_s));
    QVERIFY(writeFile(directory_->filePath(u"elsewhere"_s), "not ours"));
    QVERIFY(QFile::link(directory_->filePath(u"elsewhere"_s), data_ + u"/link"_s));
    QCOMPARE(mkfifo(QFile::encodeName(data_ + u"/pipe"_s).constData(), 0600), 0);
    QVERIFY(writeFile(data_ + u"/bad"_s, "x"));
    QCOMPARE(rename((data_ + u"/bad"_s).toUtf8().constData(), (data_.toUtf8() + "/bad\xff").constData()), 0);
    const auto exported = exportNow();
    QVERIFY(exported);
    QCOMPARE(exported->files, 2);
    QCOMPARE(exported->leftOut.size(), 4);
    QCOMPARE(content(exported->folder), (QStringList{u"FrequentCLIs"_s, u"settings.json"_s}));
    // A name that is no text is more than the temporary folder can remove.
    QCOMPARE(unlink((data_.toUtf8() + "/bad\xff").constData()), 0);
  }

  void aFailureLeavesNothing_data() {
    QTest::addColumn<QString>("locked");
    QTest::newRow("unreadable file") << u"/data/Vantle/settings.json"_s;
    QTest::newRow("unreadable folder") << u"/data/Vantle/FrequentCLIs"_s;
    QTest::newRow("destination that cannot be written") << u"/out"_s;
  }
  void aFailureLeavesNothing() {
    if (geteuid() == 0) QSKIP("root may read and write everything");
    QFETCH(QString, locked);
    const QString path = directory_->path() + locked;
    const QFile::Permissions before = QFile::permissions(path);
    QFile::setPermissions(path, locked == "/out"_L1 ? QFile::ReadOwner | QFile::ExeOwner : QFile::Permissions());
    const auto exported = exportNow();
    QFile::setPermissions(path, before);
    QVERIFY(!exported);
    QCOMPARE(exported.error().kind, locked == "/out"_L1 ? Kind::notWritten : Kind::unreadable);
    QVERIFY(content(destination_).isEmpty());
  }

  void aFullDiskLeavesNothing() {
    const SmallestFiles fullDisk;
    const auto exported = exportNow();
    QVERIFY(!exported);
    QCOMPARE(exported.error().kind, Kind::notWritten);
    QVERIFY(exported.error().description().contains(directory_->path()));
    QVERIFY(content(destination_).isEmpty());
  }

  void aCancelledOneLeavesNothing() {
    std::stop_source stop;
    stop.request_stop();
    const auto exported = exportNow(stop.get_token());
    QVERIFY(!exported && exported.error().kind == Kind::cancelled);
    QVERIFY(content(destination_).isEmpty());
  }

  void itDoesNotContainItself() {
    QVERIFY(QFile::link(data_ + u"/FrequentCLIs"_s, directory_->filePath(u"roundabout"_s)));
    for (const QString& inside : {data_, data_ + u"/FrequentCLIs"_s, directory_->filePath(u"roundabout"_s)}) {
      destination_ = inside;
      const auto exported = exportNow();
      QVERIFY(!exported && exported.error().kind == Kind::insideTheData);
    }
    destination_ = data_ + u" too"_s;
    QVERIFY(QDir().mkpath(destination_));
    QVERIFY(exportNow());
    data_ = directory_->filePath(u"nothing"_s);
    QCOMPARE(exportNow().error().kind, Kind::nothingThere);
  }

 private:
  std::expected<ExportedData, DataExportError> exportNow(const std::stop_token& stop = {}) const {
    return DataExport(data_, destination_, QDate(2026, 11, 21)).run(stop);
  }
  static QStringList content(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
  }

  std::unique_ptr<QTemporaryDir> directory_;
  QString data_;
  QString destination_;
};

QTEST_GUILESS_MAIN(TestDataExport)
#include "test_data_export.moc"
