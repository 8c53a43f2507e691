#include "app/menu/menu_placement.h"

#include <QTest>

namespace {

constexpr QSize kCard(320, 600);
/// Room between the card and the icon or the edge of the screen.
constexpr int kGap = 6;

/// Two screens; the left one with a panel of 32 pixels, at its top unless said otherwise.
std::vector<MenuScreen> screens(QRect available = QRect(0, 32, 1600, 868)) {
  return {{QRect(0, 0, 1600, 900), available}, {QRect(1600, 100, 1280, 1024), QRect(1600, 100, 1280, 1024)}};
}

}  // namespace

class MenuPlacementTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void hangsFromAPanelAtTheTop() {
    QCOMPARE(menuCard(kCard, QRect(800, 4, 24, 24), {}, screens()), QRect(QPoint(651, 38), kCard));
    // In the corner it stays on the screen, and never goes over to the next one.
    QCOMPARE(menuCard(kCard, QRect(1570, 4, 24, 24), {}, screens()).right(), 1599 - kGap);
    QCOMPARE(menuCard(kCard, QRect(4, 4, 24, 24), {}, screens()).left(), kGap);
  }

  void standsOnAPanelAtTheBottom() {
    const auto desktop = screens(QRect(0, 0, 1600, 868));
    const QRect card = menuCard(kCard, QRect(1560, 872, 24, 24), {}, desktop);
    QCOMPARE(card.bottom(), 867 - kGap);
    QCOMPARE(card.right(), 1599 - kGap);
    // It grows upwards: with fewer rows its foot stays.
    QCOMPARE(menuCard({320, 100}, QRect(1560, 872, 24, 24), {}, desktop).bottom(), card.bottom());
  }

  void standsBesideAPanelAtASide() {
    const QRect left = menuCard(kCard, QRect(4, 400, 24, 24), {}, screens(QRect(32, 0, 1568, 900)));
    QCOMPARE(left.left(), 32 + kGap);
    QCOMPARE(left.bottom(), 899 - kGap);
    const QRect right = menuCard(kCard, QRect(1572, 100, 24, 24), {}, screens(QRect(0, 0, 1568, 900)));
    QCOMPARE(right.topRight(), QPoint(1567 - kGap, 100));
  }

  // Such a panel is not left out of the screen's available part.
  void keepsOffAnIconWhosePanelReservesNoRoom_data() {
    QTest::addColumn<QRect>("icon");
    QTest::newRow("top") << QRect(1500, 0, 24, 24);
    QTest::newRow("top left corner") << QRect(0, 0, 24, 24);
    QTest::newRow("bottom") << QRect(10, 876, 24, 24);
    QTest::newRow("left") << QRect(0, 300, 24, 24);
    QTest::newRow("right") << QRect(1576, 700, 24, 24);
  }
  void keepsOffAnIconWhosePanelReservesNoRoom() {
    QFETCH(const QRect, icon);
    const QRect whole(0, 0, 1600, 900);
    const QRect card = menuCard(kCard, icon, {}, screens(whole));
    QVERIFY(!card.intersects(icon));
    QVERIFY(whole.contains(card));
    QCOMPARE(card.size(), kCard);
  }

  void followsTheIconToAnotherScreen() {
    const QRect card = menuCard(kCard, QRect(2800, 104, 24, 24), QPoint(10, 10), screens());
    QCOMPARE(card.top(), 104 + 24 + kGap);
    QCOMPARE(card.right(), 2879 - kGap);
  }

  void withoutAnIconItGoesToTheTopRightOfThePointersScreen() {
    QCOMPARE(menuCard(kCard, {}, QPoint(300, 300), screens()).topRight(), QPoint(1599 - kGap, 32 + kGap));
    QCOMPARE(menuCard(kCard, {}, QPoint(2000, 300), screens()).topRight(), QPoint(2879 - kGap, 100 + kGap));
    // A tray that has gone leaves an icon that is on no screen.
    QCOMPARE(menuCard(kCard, QRect(9000, 0, 24, 24), QPoint(300, 300), screens()).right(), 1599 - kGap);
    QVERIFY(menuCard(kCard, {}, QPoint(0, 0), {}).isEmpty());
  }

  void aPointerOnAPanelHasClickedTheIconThere() {
    const QRect card = menuCard(kCard, {}, QPoint(700, 16), screens());
    QCOMPARE(card.top(), 32 + kGap);
    QVERIFY(qAbs(card.center().x() - 700) <= 1);
  }

  void isNoHigherThanTheRoomThereIs() {
    const QRect card = menuCard({320, 2000}, QRect(800, 4, 24, 24), {}, screens());
    QCOMPARE(card.top(), 38);
    QCOMPARE(card.bottom(), 899 - kGap);
  }
};

QTEST_APPLESS_MAIN(MenuPlacementTest)
#include "menu_placement_test.moc"
