#include "tools/frequent_clis/cli_palette_controller.h"

#include <QTest>

#include "support/cli_world.h"
#include "support/fake_palette.h"
#include "tools/frequent_clis/frequent_clis_tool.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct PanelLog {
  int made = 0;
  int dismissed = 0;
  int warmed = 0;
  bool visible = false;
};

class RecordingPanel final : public PalettePresenter {
 public:
  explicit RecordingPanel(PanelLog& log) : log_(log) { ++log_.made; }
  void present() override { log_.visible = true; }
  void warmUp() override { ++log_.warmed; }
  void dismiss() override {
    ++log_.dismissed;
    log_.visible = false;
  }

 private:
  PanelLog& log_;
};

KeyPress text(const QString& characters) {
  return {.characters = characters, .charactersIgnoringModifiers = characters};
}
KeyPress withCommand(QChar letter) { return {.command = true, .charactersIgnoringModifiers = letter}; }

}  // namespace

class CLIPaletteControllerTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() { world_ = std::make_unique<World>(); }

  void toolShowsThePaletteOnAFreshSnapshot() {
    FrequentCLIsTool tool(world_->palette, {});
    tool.activate();
    QVERIFY(world_->panel.visible);
    world_->press(text(u"zz"_s));
    world_->store.add();
    QCOMPARE(world_->palette.model().rowCount(), 0);
    world_->palette.hide();

    tool.activate();
    QCOMPARE(world_->query(), QString());
    QCOMPARE(world_->palette.model().rowCount(), 3);
    QCOMPARE(world_->panel.made, 1);
  }

  void keysBelongToThePaletteOnlyWhileShown() {
    QVERIFY(!world_->palette.handleKey(text(u"a"_s)));
    world_->palette.show();
    QVERIFY(world_->palette.handleKey(text(u"a"_s)));
    world_->palette.hide();
    world_->palette.hide();
    QCOMPARE(world_->panel.dismissed, 1);
    QVERIFY(!world_->palette.handleKey(code(keycode::kReturn)));
    QVERIFY(world_->events.sequences.empty());
  }

  void returnWithoutASelectionStays() {
    world_->palette.show();
    world_->press(text(u"no such command"_s));
    world_->press(code(keycode::kReturn));
    world_->press(withCommand(u'e'));
    QVERIFY(world_->panel.visible);
    QVERIFY(world_->settings.opened.isEmpty());
    world_->clock.advance(1s);
    QVERIFY(world_->events.sequences.empty());
  }

  void keypadEnterAndCommandReturnChoose() {
    auto commands = world_->store.commands();
    commands[0].pressReturn = true;
    world_->store.setCommands(commands);
    const auto expected = KeystrokeSender::sequence(commands[0].command, true);
    for (const KeyPress& key : {code(keycode::kKeypadEnter), KeyPress{.keyCode = keycode::kReturn, .command = true}}) {
      world_->events.sequences.clear();
      world_->palette.show();
      world_->press(key);
      world_->clock.advance(120ms);
      QCOMPARE(world_->events.sequences, std::vector<KeySequence>{expected});
    }
  }

  void aRefusedCommandIsOnTheClipboard() {
    const auto choose = [this](const KeyEventError& error) {
      world_->events.result = std::unexpected(error);
      world_->palette.show();
      world_->press(code(keycode::kReturn));
      world_->clock.advance(120ms);
    };
    // A part of it is there, or the system asks: neither is told.
    choose({u"1 characters could not be typed"_s});
    world_->permissions.trusted = false;
    choose({u"The system does not let Vantle type"_s});
    world_->permissions.trusted = true;
    QVERIFY(world_->pasteboard.texts.isEmpty() && world_->toasts.shown.empty());

    choose({u"The screen is locked"_s, KeyEventError::Kind::refused});
    QCOMPARE(world_->pasteboard.texts, QStringList{world_->store.commands()[0].command});
    QCOMPARE(world_->toasts.shown.size(), 1U);
    QCOMPARE(world_->toasts.shown[0].first.detail, u"It could not be typed: The screen is locked."_s);

    choose({u"The desktop takes no more keys"_s, KeyEventError::Kind::incomplete, u"ude"_s});
    QCOMPARE(world_->pasteboard.texts.last(), u"ude"_s);
    QCOMPARE(world_->toasts.shown[1].first.title, u"Rest of the command copied to clipboard"_s);
  }

  void twoQuickChoicesAreBothTyped() {
    world_->palette.show();
    world_->press(code(keycode::kReturn));
    world_->clock.advance(60ms);
    QVERIFY(world_->events.sequences.empty());
    world_->palette.show();
    world_->press(code(keycode::kDown));
    world_->press(code(keycode::kReturn));
    world_->clock.advance(120ms);
    QCOMPARE(world_->events.sequences.size(), 2U);
    QCOMPARE(world_->events.sequences[1], world_->codexTyped());
  }

  void queryTakesTextOnly() {
    // A digit is no shortcut, and what Option types is text.
    for (const QString& used : {u"a"_s, u"1"_s, u"日本語"_s}) {
      world_->palette.show();
      world_->press(text(used));
      QCOMPARE(world_->query(), used);
    }
    world_->press({.option = true, .characters = u"å"_s});
    QCOMPARE(world_->query(), u"日本語å"_s);
    for (const KeyPress& unused : {KeyPress{.command = true, .characters = u"a"_s},
                                   KeyPress{.control = true, .characters = u"e"_s}, text(u"\t"_s), text({})})
      QVERIFY(!world_->palette.handleKey(unused));
    QCOMPARE(world_->query(), u"日本語å"_s);
  }

  void backspaceRemovesFromTheQuery() {
    world_->palette.show();
    world_->press(text(u"y"_s));
    world_->press(text(u"e\u0301"_s));
    world_->press(code(keycode::kDelete));
    QCOMPARE(world_->query(), u"y"_s);
    world_->press(code(keycode::kDelete));
    world_->press(code(keycode::kDelete));
    QCOMPARE(world_->query(), QString());
    QCOMPARE(world_->palette.model().rowCount(), 2);
  }

  void commandEOpensTheSettingsOfTheSelection() {
    world_->palette.show();
    world_->press(code(keycode::kDown));
    world_->press(withCommand(u'E'));
    QVERIFY(!world_->panel.visible);
    QCOMPARE(world_->settings.opened, QStringList(world_->store.commands()[1].id.toString(QUuid::WithoutBraces)));
  }

  void escapeGoesBackToWhereThePaletteCameFrom() {
    world_->launcher.startedFromLauncher = true;
    world_->palette.show();
    world_->press(text(u"a"_s));
    world_->press(code(keycode::kEscape));
    QVERIFY(!world_->panel.visible);
    QCOMPARE(world_->launcher.shown, QStringList(u"frequent-clis"_s));

    world_->palette.show();
    world_->press(code(keycode::kEscape));
    QCOMPARE(world_->launcher.shown.size(), 1);
  }

  void panelIsMadeAndWarmedOnce() {
    world_->palette.prepare();
    world_->palette.prepare();
    QVERIFY(!world_->palette.isShown());
    world_->palette.show();
    world_->palette.prepare();
    QCOMPARE(world_->panel.made, 1);
    QCOMPARE(world_->panel.warmed, 1);
  }

 private:
  struct World : CLIWorld {
    World() : CLIWorld([this] { return std::make_unique<RecordingPanel>(panel); }) {}
    PanelLog panel;

    void press(const KeyPress& key) { QVERIFY(palette.handleKey(key)); }
    QString query() { return palette.model().query(); }
    KeySequence codexTyped() const { return KeystrokeSender::sequence(u"codex --yolo"_s, false); }
  };
  std::unique_ptr<World> world_;
};

QTEST_GUILESS_MAIN(CLIPaletteControllerTest)
#include "test_cli_palette_controller.moc"
