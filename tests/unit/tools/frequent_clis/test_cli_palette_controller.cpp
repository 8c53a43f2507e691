#include "tools/frequent_clis/cli_palette_controller.h"

#include <QTest>

#include "support/cli_world.h"
#include "tools/frequent_clis/frequent_clis_tool.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct PanelLog {
  int made = 0;
  int presented = 0;
  int dismissed = 0;
  int warmed = 0;
  bool visible = false;
};

class RecordingPanel final : public CLIPalettePanel {
 public:
  explicit RecordingPanel(PanelLog& log) : log_(log) { ++log_.made; }
  void present() override {
    ++log_.presented;
    log_.visible = true;
  }
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
KeyPress code(std::uint32_t keyCode) { return {.keyCode = keyCode}; }
KeyPress withCommand(QChar letter) { return {.command = true, .charactersIgnoringModifiers = letter}; }

}  // namespace

class CLIPaletteControllerTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void toolShowsThePaletteOnAFreshSnapshot();
  void keysBelongToThePaletteOnlyWhileShown();
  void typingFiltersAndReturnTypesTheCommand();
  void returnWithoutASelectionStays();
  void keypadEnterAndCommandReturnChoose();
  void twoQuickChoicesAreBothTyped();
  void queryTakesTextOnly_data();
  void queryTakesTextOnly();
  void backspaceRemovesFromTheQuery();
  void arrowsMoveTheSelection();
  void commandEOpensTheSettingsOfTheSelection();
  void escapeGoesBackToWhereThePaletteCameFrom();
  void withoutPermissionNothingIsTyped();
  void panelIsMadeAndWarmedOnce();

 private:
  struct World : CLIWorld {
    World() : CLIWorld([this](CLIPaletteController&) { return std::make_unique<RecordingPanel>(panel); }) {}
    PanelLog panel;

    void press(const KeyPress& key) { QVERIFY(palette.handleKey(key)); }
    QString query() { return palette.model().query(); }
    KeySequence codexTyped() const { return KeystrokeSender::sequence(u"codex --yolo"_s, false); }
  };
  std::unique_ptr<World> world_;
};

void CLIPaletteControllerTest::init() { world_ = std::make_unique<World>(); }

void CLIPaletteControllerTest::toolShowsThePaletteOnAFreshSnapshot() {
  FrequentCLIsTool tool(world_->palette, {});
  QCOMPARE(tool.id(), u"frequent-clis"_s);
  QCOMPARE(tool.defaultHotkey().display(), u"⌃⌥↩"_s);
  QVERIFY(!tool.requiresNetwork());

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

void CLIPaletteControllerTest::keysBelongToThePaletteOnlyWhileShown() {
  QVERIFY(!world_->palette.handleKey(text(u"a"_s)));
  world_->palette.show();
  QVERIFY(world_->palette.handleKey(text(u"a"_s)));
  world_->palette.hide();
  world_->palette.hide();
  QCOMPARE(world_->panel.dismissed, 1);
  QVERIFY(!world_->palette.handleKey(code(keycode::kReturn)));
  QVERIFY(world_->events.sequences.empty());
}

void CLIPaletteControllerTest::typingFiltersAndReturnTypesTheCommand() {
  world_->palette.show();
  for (const QChar letter : u"yolo"_s) world_->press(text(letter));
  world_->press(code(keycode::kReturn));
  QVERIFY(!world_->panel.visible);
  world_->clock.advance(119ms);
  QVERIFY(world_->events.sequences.empty());
  world_->clock.advance(1ms);
  QCOMPARE(world_->events.sequences, std::vector<KeySequence>{world_->codexTyped()});
}

void CLIPaletteControllerTest::returnWithoutASelectionStays() {
  world_->palette.show();
  world_->press(text(u"no such command"_s));
  world_->press(code(keycode::kReturn));
  world_->press(withCommand(u'e'));
  QVERIFY(world_->panel.visible);
  QVERIFY(world_->settings.opened.isEmpty());
  world_->clock.advance(1s);
  QVERIFY(world_->events.sequences.empty());
}

void CLIPaletteControllerTest::keypadEnterAndCommandReturnChoose() {
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

void CLIPaletteControllerTest::twoQuickChoicesAreBothTyped() {
  world_->palette.show();
  world_->press(code(keycode::kReturn));
  world_->clock.advance(60ms);
  world_->palette.show();
  world_->press(code(keycode::kDown));
  world_->press(code(keycode::kReturn));
  world_->clock.advance(120ms);
  QCOMPARE(world_->events.sequences.size(), 2U);
  QCOMPARE(world_->events.sequences[1], world_->codexTyped());
}

void CLIPaletteControllerTest::queryTakesTextOnly_data() {
  QTest::addColumn<QString>("characters");
  QTest::addColumn<bool>("command");
  QTest::addColumn<bool>("control");
  QTest::addColumn<bool>("option");
  QTest::addColumn<bool>("used");
  QTest::newRow("letter") << u"a"_s << false << false << false << true;
  QTest::newRow("digit is no shortcut") << u"1"_s << false << false << false << true;
  QTest::newRow("typed with option") << u"å"_s << false << false << true << true;
  QTest::newRow("input method") << u"日本語"_s << false << false << false << true;
  QTest::newRow("command") << u"a"_s << true << false << false << false;
  QTest::newRow("control") << u"a"_s << false << true << false << false;
  QTest::newRow("control and e") << u"e"_s << false << true << false << false;
  QTest::newRow("tab") << u"\t"_s << false << false << false << false;
  QTest::newRow("no characters") << QString() << false << false << false << false;
}

void CLIPaletteControllerTest::queryTakesTextOnly() {
  QFETCH(const QString, characters);
  QFETCH(const bool, command);
  QFETCH(const bool, control);
  QFETCH(const bool, option);
  QFETCH(const bool, used);
  world_->palette.show();
  KeyPress key = text(characters);
  key.command = command;
  key.control = control;
  key.option = option;
  QCOMPARE(world_->palette.handleKey(key), used);
  QCOMPARE(world_->query(), used ? characters : QString());
  QVERIFY(world_->panel.visible);
}

void CLIPaletteControllerTest::backspaceRemovesFromTheQuery() {
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

void CLIPaletteControllerTest::arrowsMoveTheSelection() {
  world_->palette.show();
  world_->press(code(keycode::kUp));
  QCOMPARE(world_->palette.model().selectionIndex(), 1);
  world_->press(code(keycode::kDown));
  QCOMPARE(world_->palette.model().selectionIndex(), 0);
}

void CLIPaletteControllerTest::commandEOpensTheSettingsOfTheSelection() {
  world_->palette.show();
  world_->press(code(keycode::kDown));
  world_->press(withCommand(u'E'));
  QVERIFY(!world_->panel.visible);
  QCOMPARE(world_->settings.opened, QStringList(world_->store.commands()[1].id.toString(QUuid::WithoutBraces)));
}

void CLIPaletteControllerTest::escapeGoesBackToWhereThePaletteCameFrom() {
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

void CLIPaletteControllerTest::withoutPermissionNothingIsTyped() {
  world_->permissions.trusted = false;
  world_->palette.show();
  world_->press(code(keycode::kReturn));
  world_->clock.advance(120ms);
  QVERIFY(world_->events.sequences.empty());
  QCOMPARE(world_->permissions.prompts, 1);
}

void CLIPaletteControllerTest::panelIsMadeAndWarmedOnce() {
  world_->palette.prepare();
  world_->palette.prepare();
  QVERIFY(!world_->palette.isShown());
  world_->palette.show();
  world_->palette.prepare();
  QCOMPARE(world_->panel.made, 1);
  QCOMPARE(world_->panel.warmed, 1);
}

QTEST_GUILESS_MAIN(CLIPaletteControllerTest)
#include "test_cli_palette_controller.moc"
