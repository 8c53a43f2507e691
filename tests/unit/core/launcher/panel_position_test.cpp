#include "core/ui/panel_position.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class PanelPositionTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void isRememberedWhileItIsOnAScreen() {
    QVERIFY(!origin(kTwo));
    PanelPosition(defaults_, "launcher"_L1).remember({2000, -40});
    QCOMPARE(origin(kTwo), QPoint(2000, -40));
    // The second screen has been unplugged; it holds again when that comes back.
    QVERIFY(!origin(kOne));
    QVERIFY(!origin({}));
    QVERIFY(origin(kTwo));
    // A corner outside is fine while the card can be reached.
    PanelPosition(defaults_, "launcher"_L1).remember({-400, 900});
    QVERIFY(origin(kOne));
    PanelPosition(defaults_, "launcher"_L1).remember({-500, 900});
    QVERIFY(!origin(kOne));
  }

  void nonsenseIsNoPosition() {
    for (const QString& x : {u"left"_s, u""_s, u"2147483647"_s, u"-2147483648"_s, u"99999999999"_s}) {
      defaults_.setValue("launcher.originX", x);
      defaults_.setValue("launcher.originY", 10);
      QVERIFY(!origin(kOne));
    }
  }

 private:
  std::optional<QPoint> origin(const QList<QRect>& screens) {
    return PanelPosition(defaults_, "launcher"_L1).origin({48, 48, 500, 400}, screens);
  }

  const QList<QRect> kOne = {QRect(0, 0, 1920, 1080)};
  const QList<QRect> kTwo = {kOne.front(), QRect(1920, 0, 1280, 1080)};
  QTemporaryDir folder_;
  QSettings defaults_{folder_.filePath(u"defaults.ini"_s), QSettings::IniFormat};
};

QTEST_GUILESS_MAIN(PanelPositionTest)
#include "panel_position_test.moc"
