#include "core/ui/launcher/launcher_position.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class LauncherPositionTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void isRememberedAcrossRunsWhileItIsOnAScreen() {
    QTemporaryDir folder;
    const QString file = folder.filePath(u"defaults.ini"_s);
    const QRect card(48, 48, 500, 400);
    const QList<QRect> one = {QRect(0, 0, 1920, 1080)};
    const QList<QRect> two = {one.front(), QRect(1920, 0, 1280, 1080)};
    {
      QSettings defaults(file, QSettings::IniFormat);
      QVERIFY(!LauncherPosition(defaults).origin(card, two));
      LauncherPosition(defaults).remember({2000, -40});
    }
    QSettings defaults(file, QSettings::IniFormat);
    QCOMPARE(defaults.value("launcher.originX").toInt(), 2000);
    QCOMPARE(LauncherPosition(defaults).origin(card, two), QPoint(2000, -40));
    // The second screen has been unplugged; it holds again when that comes back.
    QVERIFY(!LauncherPosition(defaults).origin(card, one));
    QVERIFY(!LauncherPosition(defaults).origin(card, {}));
    QVERIFY(LauncherPosition(defaults).origin(card, two));
  }

  void aCornerOutsideIsFineWhileTheCardCanBeReached() {
    QTemporaryDir folder;
    QSettings defaults(folder.filePath(u"defaults.ini"_s), QSettings::IniFormat);
    LauncherPosition position(defaults);
    const QRect card(48, 48, 500, 400);
    const QList<QRect> screens = {QRect(0, 0, 1920, 1080)};
    position.remember({-400, 900});
    QVERIFY(position.origin(card, screens));
    position.remember({-500, 900});
    QVERIFY(!position.origin(card, screens));
  }

  void nonsenseIsNoPosition() {
    QTemporaryDir folder;
    QSettings defaults(folder.filePath(u"defaults.ini"_s), QSettings::IniFormat);
    const QRect card(48, 48, 500, 400);
    const QList<QRect> screens = {QRect(0, 0, 1920, 1080)};
    for (const QString& x : {u"left"_s, u""_s, u"2147483647"_s, u"-2147483648"_s, u"99999999999"_s}) {
      defaults.setValue("launcher.originX", x);
      defaults.setValue("launcher.originY", 10);
      QVERIFY(!LauncherPosition(defaults).origin(card, screens));
    }
  }
};

QTEST_GUILESS_MAIN(LauncherPositionTest)
#include "launcher_position_test.moc"
