#include "app/menu/menu_controller.h"

#include <QSignalSpy>
#include <QTest>

#include "support/world.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class FakePanel final : public MenuPanel {
 public:
  explicit FakePanel(bool& visible) : visible_(visible) {}
  void present() override { visible_ = true; }
  void dismiss() override { visible_ = false; }

 private:
  bool& visible_;
};

struct Menu : ToolWorld {
  bool press(std::uint32_t code) { return controller.handleKey({.keyCode = code}); }
  bool command(const QString& letter) {
    return controller.handleKey({.command = true, .charactersIgnoringModifiers = letter});
  }
  void type(const QString& text) {
    for (const QChar character : text) QVERIFY(controller.handleKey({.characters = character}));
  }
  QString query() { return controller.model().query(); }
  QString selected() { return controller.model().selectedRow()->title; }

  bool visible = false;
  int panelsMade = 0;
  FakeWindowOpener windows;
  MenuController controller{{registry, hotkeys, network, sounds, clock, windows}, [this](MenuController&) {
                              ++panelsMade;
                              return std::make_unique<FakePanel>(visible);
                            }};
};

struct ShownMenu : Menu {
  ShownMenu() { controller.show(); }
};

}  // namespace

class MenuControllerTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void costsNothingBeforeItsFirstUse() {
    Menu menu;
    menu.registry.togglePin(u"feedback"_s);
    QCOMPARE(menu.controller.model().rowCount(), 0);
    QCOMPARE(menu.panelsMade, 0);
    for (int i = 0; i < 3; ++i) menu.controller.toggle();
    QVERIFY(menu.visible);
    QCOMPARE(menu.panelsMade, 1);
  }

  void theIconOpensAndCloses() {
    Menu menu;
    menu.controller.iconActivated();
    QVERIFY(menu.visible);
    menu.controller.iconActivated();
    QVERIFY(!menu.visible);

    // The click on the icon was seen as one beside the menu before the tray told of it.
    menu.controller.iconActivated();
    menu.controller.resign();
    QVERIFY(!menu.visible);
    menu.clock.advance(150ms);
    menu.controller.iconActivated();
    QVERIFY(!menu.visible);
    menu.controller.iconActivated();
    QVERIFY(menu.visible);

    // Another click, some time after one elsewhere.
    menu.controller.resign();
    menu.clock.advance(1s);
    menu.controller.iconActivated();
    QVERIFY(menu.visible);
  }

  void typingFiltersAndEscapeGoesBackOneStepAtATime() {
    ShownMenu menu;
    menu.type(u"ask 1"_s);
    QCOMPARE(menu.query(), u"ask 1"_s);
    menu.press(keycode::kDelete);
    menu.press(keycode::kDelete);
    QCOMPARE(menu.query(), u"ask"_s);
    QCOMPARE(menu.selected(), u"Ask AI"_s);
    menu.press(keycode::kEscape);
    QCOMPARE(menu.query(), QString());
    QVERIFY(menu.visible);
    menu.type(u"x"_s);
    menu.press(keycode::kDelete);
    menu.press(keycode::kEscape);
    QVERIFY(!menu.visible);
    QVERIFY(!menu.press(keycode::kReturn));

    menu.controller.show();
    menu.type(u"ask"_s);
    menu.controller.hide();
    menu.controller.show();
    QCOMPARE(menu.query(), QString());
  }

  void onlyPlainTextIsTyped() {
    ShownMenu menu;
    QVERIFY(!menu.controller.handleKey({.control = true, .characters = u"a"_s}));
    QVERIFY(!menu.controller.handleKey({.option = true, .characters = u"a"_s}));
    QVERIFY(!menu.controller.handleKey({.characters = u"\t"_s}));
    QVERIFY(!menu.command(u"x"_s));
    QCOMPARE(menu.query(), QString());
  }

  void keysMoveTheSelection() {
    ShownMenu menu;
    constexpr std::uint32_t home = 115;
    constexpr std::uint32_t end = 119;
    struct Step {
      std::uint32_t key;
      QString selected;
    };
    for (const Step& step : {Step{keycode::kDown, u"Image to URL"_s}, Step{keycode::kUp, u"Frequent CLIs"_s},
                             Step{end, u"Quit Vantle"_s}, Step{keycode::kDown, u"Frequent CLIs"_s},
                             Step{keycode::kUp, u"Quit Vantle"_s}, Step{home, u"Frequent CLIs"_s}}) {
      QVERIFY(menu.press(step.key));
      QCOMPARE(menu.selected(), step.selected);
    }
  }

  void aToolStartsOnceTheMenuHasGone() {
    for (const std::uint32_t code : {keycode::kReturn, keycode::kKeypadEnter}) {
      ShownMenu menu;
      // Its shortcut is off; the tool is not.
      menu.registry.setEnabled(u"feedback"_s, false);
      menu.type(u"feed"_s);
      menu.press(code);
      QVERIFY(!menu.visible);
      QCOMPARE(menu.activated, QStringList());
      menu.clock.advance(1ms);
      QCOMPARE(menu.activated, QStringList{u"feedback"_s});
      QCOMPARE(menu.registry.usageCount(u"feedback"_s), 1);
    }
  }

  void whatCannotBeStartedBeepsAndStays() {
    ShownMenu menu;
    menu.setOnline(false);
    menu.type(u"ask ai"_s);
    menu.press(keycode::kReturn);
    QVERIFY(menu.visible);
    QCOMPARE(menu.sounds.beeps, 1);
    // Back online it works with no action by the user.
    menu.setOnline(true);
    menu.press(keycode::kReturn);
    menu.clock.advance(1ms);
    QCOMPARE(menu.activated, QStringList{u"quick-question"_s});
    QVERIFY(menu.toasts.shown.empty());
  }

  void rowsThatAreNoneChooseNothing() {
    ShownMenu menu;
    for (const int row : {-1, 14, 1000}) menu.controller.choose(row);
    menu.type(u"nothing like it"_s);
    menu.press(keycode::kReturn);
    menu.clock.advance(1ms);
    QVERIFY(menu.visible);
    QVERIFY(menu.activated.isEmpty() && menu.windows.opened.empty());
    QCOMPARE(menu.sounds.beeps, 0);
  }

  void everyEntryDoesWhatItSays() {
    Menu menu;
    const QSignalSpy quit(&menu.controller, &MenuController::quitChosen);
    std::vector<AppWindow> expected;
    constexpr int kFirstEntry = 15;
    for (std::size_t i = 0; i < kMenuEntries.size(); ++i) {
      const MenuEntryInfo& info = kMenuEntries[i];
      menu.controller.show();
      menu.controller.choose(kFirstEntry + int(i));
      QVERIFY(!menu.visible);
      if (info.window) expected.push_back(*info.window);
      QCOMPARE(menu.windows.opened, expected);
    }
    QCOMPARE(quit.size(), 1);
    menu.controller.show();
    QVERIFY(menu.command(u","_s));
    QCOMPARE(menu.windows.opened.back(), AppWindow::settings);
    menu.controller.show();
    QVERIFY(menu.command(u"q"_s));
    QCOMPARE(quit.size(), 2);
  }
};

QTEST_GUILESS_MAIN(MenuControllerTest)
#include "menu_controller_test.moc"
