#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include "platform/xdg/desktop_entry.h"
#include "platform/xdg/xdg_login_item.h"
#include "support/files.h"

using namespace Qt::StringLiterals;

namespace {

/// A user's configuration folder, and one for the whole system.
struct Desktop {
  explicit Desktop(const QString& program = u"/opt/vantle/bin/vantle"_s)
      : item({program, folder.filePath(u"home"_s), {folder.filePath(u"etc"_s)}}) {}

  QTemporaryDir folder;
  QString own = folder.filePath(u"home/autostart/vantle.desktop"_s);
  QString forAll = folder.filePath(u"etc/autostart/vantle.desktop"_s);
  XdgLoginItem item;

  bool isOn() const { return item.state() == LoginItem::State::on; }
  bool writeOwn(const QByteArray& keys) const { return writeFile(own, "[Desktop Entry]\n" + keys); }
};

}  // namespace

class TestXdgLoginItem : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void switchesOnAndOff() {
    Desktop desktop;
    QVERIFY(!desktop.isOn());
    QVERIFY(desktop.item.setEnabled(false));
    QVERIFY(desktop.item.setEnabled(true));
    QVERIFY(desktop.isOn());
    const QByteArray written = readFile(desktop.own);
    QVERIFY(written.startsWith("[Desktop Entry]\nType=Application\nName=Vantle\n"));
    QVERIFY(written.contains("\nExec=\"/opt/vantle/bin/vantle\"\n"));
    QVERIFY(desktop.item.setEnabled(false));
    QVERIFY(!desktop.isOn());
    QVERIFY(!QFileInfo::exists(desktop.own));
  }

  void followsWhatOthersWrite_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("on");
    QTest::newRow("another copy of the program")
        << QByteArray("[Desktop Entry]\nExec=/elsewhere/vantle --quiet\n") << true;
    QTest::newRow("hidden") << QByteArray("[Desktop Entry]\nExec=vantle\nHidden=true\n") << false;
    QTest::newRow("switched off in GNOME")
        << QByteArray("[Desktop Entry]\r\nExec=vantle\r\nX-GNOME-Autostart-enabled = false\r\n") << false;
    QTest::newRow("keys of another group")
        << QByteArray("[Desktop Entry]\nExec=vantle\n[Desktop Action x]\nHidden=true\n") << true;
    QTest::newRow("nothing to start") << QByteArray("[Desktop Entry]\nExec=\n") << false;
    QTest::newRow("no entry") << QByteArray("\xff\xfe\0=\n=x\n[\n", 9) << false;
    QTest::newRow("huge") << "[Desktop Entry]\nExec=vantle\n" + QByteArray(1024 * 1024, '#') << false;
  }

  void followsWhatOthersWrite() {
    QFETCH(QByteArray, text);
    QFETCH(bool, on);
    Desktop desktop;
    QVERIFY(writeFile(desktop.own, text));
    QCOMPARE(desktop.isOn(), on);
    // Whatever it was, switching on makes it this program's.
    QVERIFY(desktop.item.setEnabled(true));
    QVERIFY(desktop.isOn());
    QCOMPARE(DesktopEntry(readFile(desktop.own)).program(), u"/opt/vantle/bin/vantle"_s);
  }

  void anEntryThatIsRightIsLeftAlone() {
    Desktop desktop;
    QVERIFY(desktop.writeOwn("Exec=/opt/vantle/bin/vantle\nX-Delay=5\n"));
    QVERIFY(desktop.item.setEnabled(true));
    QVERIFY(readFile(desktop.own).contains("X-Delay=5"));
  }

  void theEntryForTheWholeSystemIsHidden() {
    Desktop desktop;
    QVERIFY(writeFile(desktop.forAll, "[Desktop Entry]\nExec=vantle\n"));
    QVERIFY(desktop.isOn());
    QVERIFY(desktop.item.setEnabled(false));
    QVERIFY(!desktop.isOn());
    QVERIFY(readFile(desktop.own).contains("\nHidden=true\n"));
    QVERIFY(desktop.item.setEnabled(true));
    QVERIFY(desktop.isOn());
    QVERIFY(QFile::remove(desktop.forAll));
    QVERIFY(desktop.item.setEnabled(false));
    QVERIFY(!QFileInfo::exists(desktop.own));
  }

  void aLinkIsReplacedAndNotFollowed() {
    Desktop desktop;
    const QString precious = desktop.folder.filePath(u"precious"_s);
    QVERIFY(writeFile(precious, "mine"));
    QVERIFY(desktop.writeOwn({}) && QFile::remove(desktop.own));
    for (const QString& target : {precious, desktop.folder.filePath(u"nowhere"_s)}) {
      QVERIFY(QFile::link(target, desktop.own));
      QVERIFY(!desktop.isOn());
      QVERIFY(desktop.item.setEnabled(true));
      QVERIFY(desktop.isOn() && !QFileInfo(desktop.own).isSymLink());
      QVERIFY(desktop.item.setEnabled(false));
    }
    QCOMPARE(readFile(precious), "mine");
    QVERIFY(!QFileInfo::exists(desktop.folder.filePath(u"nowhere"_s)));
  }

  void whatIsNoFileInItsPlaceIsAnError() {
    Desktop desktop;
    QVERIFY(QDir().mkpath(desktop.own));
    QVERIFY(!desktop.isOn());
    for (const bool enabled : {true, false}) {
      const auto result = desktop.item.setEnabled(enabled);
      QVERIFY(!result);
      QVERIFY(result.error().description().startsWith(u"Open at login could not be changed: "_s + desktop.own));
    }
    QVERIFY(QDir().rmdir(desktop.own));
    // Nobody writes to it: opening it the ordinary way would never return.
    QCOMPARE(::mkfifo(desktop.own.toLocal8Bit().constData(), 0600), 0);
    QVERIFY(!desktop.isOn());
    QVERIFY(desktop.item.setEnabled(true));
    QVERIFY(desktop.isOn());
  }

  void aFolderThatTakesNothingIsAnError() {
    Desktop desktop;
    QVERIFY(writeFile(desktop.folder.filePath(u"home/autostart"_s), "a file, no folder"));
    QVERIFY(!desktop.item.setEnabled(true));
    QVERIFY(desktop.item.setEnabled(false));
    if (::geteuid() == 0) QSKIP("the administrator may write everywhere");
    QVERIFY(QFile::remove(desktop.folder.filePath(u"home/autostart"_s)));
    QVERIFY(desktop.item.setEnabled(true));
    QFile folder(QFileInfo(desktop.own).path());
    QVERIFY(folder.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    QVERIFY(!desktop.item.setEnabled(false));
    QVERIFY(desktop.isOn());
    QVERIFY(folder.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
  }

  void anyPathSurvivesTheQuoting() {
    QCOMPARE(execArgument(u"/a $x`%u"_s), u"\"/a \\\\$x\\\\`%%u\""_s);
    QCOMPARE(execArgument(u"/\"\\"_s), u"\"/\\\\\"\\\\\\\\\""_s);
    for (const QString& path : {u"/plain"_s, u"/a b/$HOME`id`\"\\s%u=é)"_s, u"/new\nline\ttab"_s, u"/trailing\\"_s}) {
      Desktop desktop(path);
      QVERIFY(desktop.item.setEnabled(true));
      QCOMPARE(DesktopEntry(readFile(desktop.own)).program(), path);
    }
  }
};

QTEST_GUILESS_MAIN(TestXdgLoginItem)
#include "test_xdg_login_item.moc"
