#include <QTest>
#include <QWindow>

#include "menu_stage.h"
#include "platform/platform.h"
#include "support/x_client.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct RealPlatform {
  Platform platform = makePlatform();
};

struct Menu : RealPlatform, MenuStage {
  Menu() : MenuStage(*platform.panelWindow) {}
};

}  // namespace

/// The user's application stays the active one from the first click to the last.
class MenuX11Test : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    terminal_.openWindow(100, 100, 300, 200);
    QTRY_COMPARE(terminal_.activeWindow(), terminal_.window());
    QTRY_COMPARE(terminal_.focusedWindow(), terminal_.window());
  }
  void init() { user_.moveTo(600, 900); }

  void keysGoToTheMenuAndThenToTheApplicationAgain() {
    Menu menu;
    menu.controller.show();
    QTRY_VERIFY(menu.panel().windowHandle()->isExposed());
    const auto before = terminal_.keysReceived().size();
    for (const char letter : {'v', 'i', 'b', 'e'}) user_.tap(user_.keyCode(xcb_keysym_t(letter)));
    QTRY_COMPARE(menu.controller.model().query(), u"vibe"_s);
    QCOMPARE(user_.activeWindow(), terminal_.window());
    user_.tap(user_.keyCode(kReturn));
    QTRY_VERIFY(!menu.panel().isVisible());
    menu.clock.advance(1ms);
    QCOMPARE(menu.activated, QStringList{u"vibe-history"_s});
    QCOMPARE(terminal_.keysReceived().size(), before);
    user_.tap(user_.keyCode('a'));
    QTRY_COMPARE(terminal_.keysReceived().size(), before + 1);
    QCOMPARE(user_.activeWindow(), terminal_.window());
  }

  void shownAgainAtOnceItKnowsThatItHasTheKeyboard() {
    Menu menu;
    for (int round = 0; round < 3; ++round) {
      menu.controller.show();
      QTRY_VERIFY(menu.panel().isActiveWindow());
      menu.controller.hide();
    }
  }

  void theMouseChoosesWithoutActivating() {
    Menu menu;
    menu.controller.show();
    QTRY_VERIFY(menu.panel().windowHandle()->isExposed());
    const QPoint row = menu.list().viewport()->mapToGlobal(menu.middleOf(7));
    user_.moveTo(row.x() - 5, row.y());
    QTRY_COMPARE(menu.controller.model().selection(), 7);
    user_.click(row.x(), row.y());
    QTRY_VERIFY(!menu.panel().isVisible());
    menu.clock.advance(1ms);
    QCOMPARE(menu.activated, QStringList{u"inject-md"_s});
    QCOMPARE(user_.activeWindow(), terminal_.window());
  }

  void aClickElsewhereClosesItAndIsNotLost() {
    Menu menu;
    menu.controller.show();
    QTRY_VERIFY(menu.panel().windowHandle()->isExposed());
    const int clicks = terminal_.clicksReceived();
    user_.click(200, 200);
    QTRY_VERIFY(!menu.panel().isVisible());
    QTRY_COMPARE(terminal_.clicksReceived(), clicks + 1);
  }

 private:
  static constexpr xcb_keysym_t kReturn = 0xff0d;

  XClient terminal_;
  XClient user_;
};

QTEST_MAIN(MenuX11Test)
#include "menu_x11_test.moc"
