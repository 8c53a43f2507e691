#include <QComboBox>
#include <QLineEdit>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTest>

#include "core/ui/settings_form.h"
#include "core/ui/toggle_switch.h"
#include "support/controls.h"
#include "support/wear_theme.h"
#include "tools/open_project/open_project_settings_view.h"

using namespace Qt::StringLiterals;

namespace {

std::vector<LaunchPreset> somePresets() {
  return {{u"Terminal"_s, u"term %path"_s, u"term %script"_s, {}, {}},
          {u"Missing"_s, u"gone %path"_s, u"gone %script"_s, u"command -v no-such-program-here"_s, {}},
          {u"Editor"_s, u"edit %path"_s, {}, {}, {}}};
}

struct Stage {
  Stage() {
    page.resize(560, 640);
    page.addWidget(new OpenProjectSettingsView(store, installed));
    page.show();
    page.activateWindow();
    if (!QTest::qWaitForWindowActive(&page)) qFatal("the page is not active");
  }
  QComboBox& program() { return *named<QComboBox>(page, u"Program"_s); }
  QLineEdit& field(const QString& name) { return *named<QLineEdit>(page, name); }
  ToggleSwitch& toggle(const QString& name) { return *named<ToggleSwitch>(page, name); }
  /// With the keyboard, as one does in a closed list.
  void choose(const QString& name) {
    program().setFocus();
    for (int presses = program().count(); presses > 0 && program().currentText() != name; --presses)
      QTest::keyClick(&program(), Qt::Key_Down);
    QCOMPARE(program().currentText(), name);
  }
  void type(const QString& name, const QString& text) {
    field(name).setFocus();
    field(name).selectAll();
    QTest::keyClicks(&field(name), text);
    QTest::keyClick(&field(name), Qt::Key_Return);
  }
  QStringList hints() const {
    QStringList hints;
    for (const RowRemark* remark : page.findChildren<RowRemark*>())
      if (remark->isVisible()) hints.append(remark->text());
    return hints;
  }

  QTemporaryDir directory;
  OpenProjectStore store{directory.filePath(u"open-project.json"_s)};
  InstalledPresets installed{somePresets(), u"/bin/sh"_s};
  SettingsPage page;
};

}  // namespace

class TestOpenProjectSettings : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { wearTheme(); }

  void theProgramFillsTheCommandAndBack() {
    Stage stage;
    QCOMPARE(unnamedControls(stage.page), QStringList());
    QCOMPARE(stage.program().currentText(), u"Terminal"_s);
    QCOMPARE(stage.field(u"Command"_s).text(), u"term %path"_s);
    stage.choose(u"Editor"_s);
    QCOMPARE(stage.store.value().command, u"edit %path"_s);
    QCOMPARE(stage.field(u"Command"_s).text(), u"edit %path"_s);
    stage.type(u"Command"_s, u" mine %path "_s);
    QCOMPARE(stage.store.value().command, u"mine %path"_s);
    QCOMPARE(stage.program().currentText(), u"Custom"_s);
    stage.type(u"Command"_s, u"term %path"_s);
    QCOMPARE(stage.program().currentText(), u"Terminal"_s);
    // Without a command the first program serves.
    stage.field(u"Command"_s).clear();
    stage.type(u"Command"_s, u" "_s);
    QCOMPARE(stage.field(u"Command"_s).text(), u"term %path"_s);
  }

  void customLeadsToTheCommand() {
    Stage stage;
    stage.choose(u"Custom"_s);
    QVERIFY(stage.field(u"Command"_s).hasFocus());
    QTest::keyClick(&stage.field(u"Command"_s), Qt::Key_Tab);
    QCOMPARE(stage.program().currentText(), u"Editor"_s);
  }

  void whatIsMissingCannotBeChosen() {
    Stage stage;
    const auto* rows = qobject_cast<QStandardItemModel*>(stage.program().model());
    QTRY_VERIFY(!rows->item(1)->isEnabled());
    QVERIFY(rows->item(0)->isEnabled() && rows->item(2)->isEnabled());
  }

  void anAgentNeedsATerminal() {
    Stage stage;
    QVERIFY(stage.toggle(u"Start an agent"_s).isEnabled() && !stage.field(u"Agent command"_s).isEnabled());
    QTest::mouseClick(&stage.toggle(u"Start an agent"_s), Qt::LeftButton);
    QVERIFY(stage.store.value().autoRunAgent && stage.toggle(u"Skip permission questions"_s).isEnabled());
    QCOMPARE(stage.hints(), QStringList());
    stage.choose(u"Editor"_s);
    QVERIFY(!stage.toggle(u"Start an agent"_s).isEnabled() && !stage.field(u"Agent command"_s).isEnabled());
    QCOMPARE(
        stage.hints(),
        QStringList(u"Only available when opening a terminal — pick Terminal, or Missing under “Open with” above."_s));
    // Which program it will be is open then.
    QTest::mouseClick(&stage.toggle(u"Choose each time"_s), Qt::LeftButton);
    QVERIFY(stage.toggle(u"Start an agent"_s).isEnabled());
  }

  void anUnknownAgentHasNoFlag() {
    Stage stage;
    stage.store.update([](OpenProjectSettings& settings) { settings.autoRunAgent = true; });
    stage.type(u"Agent command"_s, u"aider --x"_s);
    QCOMPARE(stage.store.value().agentCommand, u"aider --x"_s);
    QVERIFY(!stage.toggle(u"Skip permission questions"_s).isEnabled());
    QCOMPARE(stage.hints(), QStringList(u"No known YOLO flag for this agent — add its skip-permissions flag to the "
                                        u"command yourself."_s));
    stage.type(u"Agent command"_s, u"/opt/codex"_s);
    QCOMPARE(stage.hints(), QStringList());
  }
};

QTEST_MAIN(TestOpenProjectSettings)
#include "test_open_project_settings.moc"
