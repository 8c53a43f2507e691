#include "core/ui/launcher/tool_launcher_controller.h"

#include <QTest>

#include "support/world.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Hides when the test says so, as an animated panel does.
class FakePanel final : public LauncherPanel {
 public:
  void present() override {
    ++presented;
    hidden_ = nullptr;
  }
  void leave(bool animated, std::function<void()> hidden) override {
    animations.push_back(animated);
    if (animated)
      hidden_ = std::move(hidden);
    else
      hidden();
  }
  void finishExit() {
    if (hidden_) std::exchange(hidden_, nullptr)();
  }

  int presented = 0;
  std::vector<bool> animations;

 private:
  std::function<void()> hidden_;
};

KeyPress key(std::uint32_t code) { return {.keyCode = code}; }
KeyPress command(std::uint32_t code) { return {.keyCode = code, .command = true, .characters = u"x"_s}; }
KeyPress typed(const QString& text) { return {.characters = text}; }

struct Launcher : ToolWorld {
  bool press(const KeyPress& press) { return controller.handleKey(press); }
  void type(const QString& text) {
    for (const QChar character : text) QVERIFY(press(typed(character)));
  }
  QString highlighted() {
    const auto item = controller.model().selectedItem();
    return item ? item->id() : QString();
  }
  /// Lets the zero-length wait before a tool's start pass.
  void settle() { clock.advance(1ms); }

  FakePanel* panel = nullptr;
  int panelsMade = 0;
  ToolLauncherController controller{{registry, network, sounds, clock}, [this](ToolLauncherController&) {
                                      ++panelsMade;
                                      auto made = std::make_unique<FakePanel>();
                                      panel = made.get();
                                      return made;
                                    }};
};

struct ShownLauncher : Launcher {
  ShownLauncher() { controller.show(); }
};

}  // namespace

class ToolLauncherControllerTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void keysMoveTheHighlight() {
    ShownLauncher launcher;
    constexpr std::uint32_t pageUp = 116;
    constexpr std::uint32_t pageDown = 121;
    struct Step {
      std::uint32_t key;
      int highlighted;
    };
    // The ends hold; a page's turn keeps the slot, or takes the last tool when there is none in it.
    for (const Step& step :
         {Step{keycode::kDown, 3}, Step{keycode::kRight, 4}, Step{keycode::kUp, 1}, Step{keycode::kLeft, 0},
          Step{keycode::kLeft, 0}, Step{keycode::kDown, 3}, Step{keycode::kDown, 6}, Step{keycode::kRight, 7},
          Step{pageDown, 13}, Step{pageDown, 13}, Step{pageUp, 4}}) {
      launcher.press(key(step.key));
      QCOMPARE(launcher.controller.model().selectionIndex(), step.highlighted);
    }
  }

  void typingFiltersAndDeleteTakesWholeCharactersBack() {
    ShownLauncher launcher;
    launcher.type(u"ima e"_s);
    QCOMPARE(launcher.controller.model().query(), u"ima e"_s);
    launcher.press(typed(u"👩‍💻"_s));
    launcher.press(key(keycode::kDelete));
    QCOMPARE(launcher.controller.model().query(), u"ima e"_s);
    for (int i = 0; i < 7; ++i) QVERIFY(launcher.press(key(keycode::kDelete)));
    QCOMPARE(launcher.controller.model().query(), QString());
  }

  void onlyPlainTextIsTyped() {
    ShownLauncher launcher;
    QVERIFY(!launcher.press({.control = true, .characters = u"a"_s}));
    QVERIFY(!launcher.press({.option = true, .characters = u"a"_s}));
    QVERIFY(!launcher.press({.keyCode = 0, .command = true, .characters = u"a"_s}));
    QVERIFY(!launcher.press(typed(u"\t"_s)));
    QCOMPARE(launcher.controller.model().query(), QString());
    QVERIFY(launcher.press({.keyCode = keycode::kE, .shift = true, .characters = u"E"_s}));
    QCOMPARE(launcher.controller.model().query(), u"E"_s);
    QVERIFY(!launcher.controller.model().isArranging());
  }

  void returnStartsTheToolOnceTheLauncherHasGone() {
    for (const std::uint32_t code : {keycode::kReturn, keycode::kKeypadEnter}) {
      Launcher launcher;
      bool startedFromLauncher = false;
      launcher.onActivate = [&] { startedFromLauncher = launcher.controller.takeStartedFromLauncher(); };
      launcher.controller.show();
      launcher.type(u"feed"_s);
      launcher.press(key(code));
      QVERIFY(!launcher.controller.model().isShown());
      QCOMPARE(launcher.activated, QStringList());
      launcher.settle();
      QCOMPARE(launcher.activated, QStringList{u"feedback"_s});
      QCOMPARE(launcher.registry.usageCount(u"feedback"_s), 1);
      QCOMPARE(launcher.controller.lastRunToolID(), u"feedback"_s);
      QVERIFY(startedFromLauncher);
      QVERIFY(!launcher.controller.takeStartedFromLauncher());

      // The flag does not outlive a tool that does not ask.
      launcher.onActivate = nullptr;
      launcher.controller.show();
      launcher.press(key(code));
      launcher.settle();
      QCOMPARE(launcher.activated.size(), 2);
      QVERIFY(!launcher.controller.takeStartedFromLauncher());
    }
  }

  void whatCannotBeStartedBeepsAndStays() {
    Launcher launcher;
    launcher.setOnline(false);
    launcher.registry.setEnabled(u"open-project"_s, false);
    launcher.controller.show(u"uplink"_s);
    launcher.press(key(keycode::kReturn));
    launcher.press(typed(u"2"_s));
    launcher.controller.show(u"open-project"_s);
    launcher.press(key(keycode::kReturn));
    QCOMPARE(launcher.sounds.beeps, 3);
    QVERIFY(launcher.controller.model().isShown());

    // Back online it works with no action by the user.
    launcher.setOnline(true);
    launcher.press(typed(u"2"_s));
    launcher.settle();
    QCOMPARE(launcher.activated, QStringList{u"uplink"_s});
    QCOMPARE(launcher.toasts.shown.size(), std::size_t{0});
  }

  void nothingHighlightedNothingStarted() {
    ShownLauncher launcher;
    launcher.type(u"zzz"_s);
    launcher.press(key(keycode::kReturn));
    launcher.press(command(keycode::kRight));
    launcher.press(command(keycode::kP));
    QVERIFY(launcher.controller.model().isShown());
    QCOMPARE(launcher.sounds.beeps, 0);
    QCOMPARE(launcher.registry.pinnedToolIDs(), QStringList());
  }

  void digitsCountFromTheFirstTileOfThePage() {
    ShownLauncher launcher;
    launcher.press(key(121));
    for (const QString& empty : {u"0"_s, u"6"_s, u"9"_s}) launcher.press(typed(empty));
    QCOMPARE(launcher.sounds.beeps, 3);
    QCOMPARE(launcher.controller.model().query(), QString());
    launcher.press(typed(u"5"_s));
    launcher.settle();
    QCOMPARE(launcher.activated, QStringList{u"feedback"_s});
  }

  void escapeTakesBackOneThingAtATime() {
    ShownLauncher launcher;
    launcher.type(u"ask"_s);
    launcher.press(command(keycode::kE));
    launcher.press(key(keycode::kEscape));
    QVERIFY(!launcher.controller.model().isArranging());
    QCOMPARE(launcher.controller.model().query(), u"ask"_s);
    launcher.press(key(keycode::kEscape));
    QCOMPARE(launcher.controller.model().query(), QString());
    QVERIFY(launcher.controller.model().isShown());
    launcher.press(key(keycode::kEscape));
    QVERIFY(!launcher.controller.model().isShown());
    QCOMPARE(launcher.panel->animations, std::vector{true});
  }

  void keysMeanNothingWhileTheLauncherIsLeavingOrGone() {
    Launcher launcher;
    QVERIFY(!launcher.press(key(keycode::kReturn)));
    launcher.controller.show();
    launcher.controller.dismiss();
    QVERIFY(!launcher.press(key(keycode::kReturn)));
    QVERIFY(!launcher.press(typed(u"1"_s)));
    launcher.controller.run(0);
    launcher.panel->finishExit();
    launcher.settle();
    QCOMPARE(launcher.activated, QStringList());
    QCOMPARE(launcher.sounds.beeps, 0);
  }

  void theShortcutTogglesAlsoInTheMiddleOfAnExit() {
    Launcher launcher;
    launcher.controller.toggle();
    launcher.type(u"ask"_s);
    launcher.controller.toggle();
    launcher.controller.toggle();
    QVERIFY(launcher.controller.model().isShown());
    QCOMPARE(launcher.controller.model().query(), QString());
    launcher.panel->finishExit();
    QVERIFY(launcher.press(key(keycode::kRight)));
    launcher.controller.toggle();
    launcher.panel->finishExit();
    launcher.controller.toggle();
    QCOMPARE(launcher.panel->presented, 3);
    QCOMPARE(launcher.panelsMade, 1);
  }

  void palettesComeBackToTheirTile() {
    Launcher launcher;
    launcher.controller.showLauncher(u"boilerplates"_s);
    QCOMPARE(launcher.highlighted(), u"boilerplates"_s);
    QCOMPARE(launcher.controller.model().currentPage(), 1);
    launcher.controller.showLauncher(u"no-such-tool"_s);
    QCOMPARE(launcher.controller.model().selectionIndex(), 0);
  }

  void carryingReordersTheGridAndKeepsTheHighlight() {
    Launcher launcher;
    launcher.registry.setSortMode(ToolSortMode::alphabetical);
    launcher.controller.show();
    QStringList order = launcher.order();
    launcher.press(command(keycode::kDown));
    order.move(0, 3);
    QCOMPARE(launcher.order(), order);
    launcher.press(command(keycode::kLeft));
    order.move(3, 2);
    QCOMPARE(launcher.order(), order);
    QCOMPARE(launcher.registry.sortMode(), ToolSortMode::manual);
    QCOMPARE(launcher.controller.model().selectionIndex(), 2);
    QCOMPARE(launcher.controller.model().pulseID(), launcher.highlighted());
    // A row further up than there is: the first place.
    launcher.press(command(keycode::kUp));
    order.move(2, 0);
    QCOMPARE(launcher.order(), order);
  }

  void pinnedToolsStayAmongThePinned() {
    Launcher launcher;
    for (const QString& id : {u"feedback"_s, u"uplink"_s, u"image-ask"_s}) launcher.registry.togglePin(id);
    launcher.controller.show();
    launcher.press(command(keycode::kDown));
    QCOMPARE(launcher.registry.pinnedToolIDs(), QStringList({u"uplink"_s, u"image-ask"_s, u"feedback"_s}));
    launcher.press(command(keycode::kRight));
    QCOMPARE(launcher.controller.model().selectionIndex(), 2);

    launcher.controller.highlight(4);
    const QString carried = launcher.highlighted();
    launcher.press(command(keycode::kUp));
    launcher.press(command(keycode::kUp));
    QCOMPARE(launcher.order().indexOf(carried), 3);
    QCOMPARE(launcher.registry.pinnedToolIDs().size(), 3);
  }

  void carryingInAFilteredGridPassesTheHiddenTools() {
    ShownLauncher launcher;
    launcher.type(u"image"_s);
    // uplink, promptify, image-ask, generate-image are shown.
    launcher.press(command(keycode::kDown));
    const QStringList order = launcher.order();
    QCOMPARE(order.indexOf(u"uplink"_s), order.indexOf(u"generate-image"_s) + 1);
    QCOMPARE(launcher.highlighted(), u"uplink"_s);
    QCOMPARE(order.size(), 14);
  }

  void digitsMoveToASlotInArrangeMode() {
    ShownLauncher launcher;
    launcher.press(command(keycode::kE));
    launcher.press(typed(u"4"_s));
    QCOMPARE(launcher.order().indexOf(u"frequent-clis"_s), 3);
    launcher.press(typed(u"0"_s));
    QCOMPARE(launcher.sounds.beeps, 1);
    launcher.press(key(keycode::kDelete));
    launcher.press(key(keycode::kReturn));
    QVERIFY(!launcher.controller.model().isArranging());
    QVERIFY(launcher.controller.model().isShown());
    QCOMPARE(launcher.activated, QStringList());
  }

  void pinAndSortHaveKeys() {
    Launcher launcher;
    launcher.controller.show(u"image-ask"_s);
    launcher.press(command(keycode::kP));
    QCOMPARE(launcher.order().front(), u"image-ask"_s);
    QCOMPARE(launcher.highlighted(), u"image-ask"_s);
    QCOMPARE(launcher.controller.model().pulseID(), u"image-ask"_s);
    launcher.press(command(keycode::kP));
    QVERIFY(!launcher.registry.isPinned(u"image-ask"_s));
    for (const auto& mode : toolSortModes()) {
      QCOMPARE(launcher.registry.sortMode(), mode.mode);
      launcher.press(command(1));
    }
    QCOMPARE(launcher.registry.sortMode(), ToolSortMode::manual);
  }
};

QTEST_GUILESS_MAIN(ToolLauncherControllerTest)
#include "tool_launcher_controller_test.moc"
