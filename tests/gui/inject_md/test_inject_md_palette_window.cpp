#include "tools/inject_md/inject_md_palette_window.h"

#include <QAccessible>
#include <QScrollBar>
#include <QTest>

#include "core/ui/palette_list.h"
#include "core/ui/search_field.h"
#include "support/agent_home.h"
#include "support/fake_clock.h"
#include "support/fake_panel_window.h"
#include "support/fake_presenters.h"
#include "support/files.h"
#include "support/wear_theme.h"
#include "tools/inject_md/diff_view.h"
#include "tools/inject_md/inject_md_palette_controller.h"

using namespace Qt::StringLiterals;

namespace {

/// A home with a few projects, and the palette that asks which of them.
struct Stage {
  Stage() {
    int minute = 0;
    for (const QString& name : {u"deep"_s + u"/quite-a-long-folder-name"_s.repeated(5) + u"/inner"_s, u"website"_s,
                                u"it's ünïcode"_s, u"shop"_s})
      addProject(name, ++minute);
  }
  void addProject(const QString& name, int minute) {
    const QString path = home.path() + u'/' + name;
    QDir().mkpath(path);
    home.claude(u"session-%1"_s.arg(minute), minute, path);
  }
  void open() {
    palette.show();
    QTRY_VERIFY(!palette.model().projects().isLoading());
  }
  void press(Qt::Key key) { QTest::keyClick(&panel(), key); }
  PalettePanel& panel() { return window->panel(); }
  PaletteList& list() { return *panel().findChild<PaletteList*>(); }
  DiffView& changes() { return *panel().findChild<DiffView*>(); }
  /// Asks about the file that is there in the first project with that name.
  void askAbout(const QString& name, const QByteArray& existing) {
    QVERIFY(writeFile(home.path() + u'/' + name + u"/AGENTS.md"_s, existing));
    open();
    QTest::keyClicks(&panel(), name.section(u'/', -1));
    press(Qt::Key_Return);
    QTRY_COMPARE(palette.model().step(), InjectMDPaletteModel::Step::overwrite);
  }

  AgentHome home;
  QTemporaryDir directory;
  FakeClock clock;
  FakeToasts toasts;
  FakeLauncherOpener launcher;
  /// Outlives the panel, which gives its keyboard back when it goes.
  FakePanelWindow native;
  InjectMDStore settings{directory.filePath(u"inject-md.json"_s)};
  VibeHistoryStore history{directory.filePath(u"history.json"_s)};
  SessionTraceScanner scanner{home.path()};
  InjectMDPaletteWindow* window = nullptr;
  InjectMDPaletteController palette{
      {settings, history, scanner, toasts, clock, launcher, [](const QString&, const auto&) {}, home.path()}, [this] {
        auto made = std::make_unique<InjectMDPaletteWindow>(native, palette);
        window = made.get();
        return made;
      }};
};

QByteArray oldFile(int lines) {
  QByteArray text("# AGENTS.md\n\nInstructions for AI coding agents working in this repository.\n\n## Project\n\n");
  for (int line = 1; line <= lines; ++line)
    text += "- Rule " + QByteArray::number(line) + ":\twhat has been agreed on, in words that go on for a while\n";
  return text;
}

}  // namespace

class TestInjectMDPaletteWindow : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { wearTheme(); }

  void bothAnswersAndTheChangesAreSeen() {
    Stage stage;
    stage.askAbout(u"shop"_s, oldFile(300));
    QVERIFY(stage.changes().isVisible());
    QVERIFY(stage.changes().accessibleName().startsWith(u"Changes: "_s));
    for (const int row : {0, 1})
      QVERIFY(stage.list().viewport()->rect().contains(stage.list().visualRect(stage.list().model()->index(row, 0))));

    QScrollBar& bar = *stage.changes().verticalScrollBar();
    stage.press(Qt::Key_PageDown);
    const int page = bar.value();
    QVERIFY(page > 0 && page < stage.changes().viewport()->height());
    stage.press(Qt::Key_Down);
    QCOMPARE(bar.value(), page);
    for (int pages = bar.maximum() / page; pages >= 0; --pages) stage.press(Qt::Key_PageDown);
    QCOMPARE(bar.value(), bar.maximum());
    stage.press(Qt::Key_Escape);
    QVERIFY(stage.changes().isHidden());
    stage.press(Qt::Key_Escape);
    QVERIFY(stage.panel().isHidden());
  }

  void clicksAnswer() {
    Stage stage;
    stage.askAbout(u"shop"_s, "mine\n");
    const QRect row = stage.list().visualRect(stage.list().model()->index(1, 0));
    QTest::mouseClick(stage.changes().viewport(), Qt::LeftButton);
    QVERIFY(stage.panel().isVisible());
    QTest::mouseClick(stage.list().viewport(), Qt::LeftButton, {}, row.center());
    QVERIFY(stage.panel().isHidden());
    QTRY_VERIFY(readFile(stage.home.path() + u"/shop/AGENTS.md"_s).startsWith("# AGENTS.md"));
  }
};

QTEST_MAIN(TestInjectMDPaletteWindow)
#include "test_inject_md_palette_window.moc"
