#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include "core/ui/palette_list.h"
#include "core/ui/search_field.h"
#include "support/fake_clock.h"
#include "support/fake_panel_window.h"
#include "support/fake_presenters.h"
#include "support/files.h"
#include "tools/boilerplates/boilerplates_palette_controller.h"
#include "tools/boilerplates/boilerplates_palette_window.h"

using namespace Qt::StringLiterals;

namespace {

struct World {
  QTemporaryDir home;
  BoilerplateStore store{home.filePath(u"boilerplates.json"_s)};
  VibeHistoryStore history{home.filePath(u"history.json"_s)};
  SessionTraceScanner scanner{home.path()};
  FakeSettingsOpener settings;
  FakeToasts toasts;
  FakeClock clock;
  FakeLauncherOpener launcher;
  FakePanelWindow native;
  BoilerplatesPaletteWindow* window = nullptr;
  BoilerplatesPaletteController palette{
      {store, history, scanner, settings, toasts, clock, launcher, [](const QString&, const auto&) {}}, [this] {
        auto made = std::make_unique<BoilerplatesPaletteWindow>(native, palette);
        window = made.get();
        return made;
      }};

  World() {
    writeFile(home.filePath(u"web/{{name}}.txt"_s), "{{name}}");
    QDir(home.path()).mkpath(u"work"_s);
    store.update([this](BoilerplateSettings& values) {
      values.add(home.filePath(u"tool"_s));
      values.add(home.filePath(u"web"_s));
      values.lastPlace = home.filePath(u"work"_s);
    });
    palette.show();
  }

  PalettePanel& panel() { return window->panel(); }
  PaletteList& list() { return *panel().findChild<PaletteList*>(); }
  SearchField& search() { return *panel().findChild<SearchField*>(); }
  void click(int row) {
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, list().visualRect(palette.model().index(row)).center());
  }
};

}  // namespace

class TestBoilerplatesPaletteWindow : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void keysLeadFromTheTemplateToTheProject() {
    World world;
    QCOMPARE(world.panel().size(), QSize(716, 476));
    QCOMPARE(world.search().text(), QString());
    QTest::keyClick(&world.panel(), Qt::Key_Down);
    QTest::keyClick(&world.panel(), Qt::Key_Return);
    QTest::keyClicks(&world.panel(), u"shop"_s);
    QCOMPARE(world.search().text(), u"shop"_s);
    QTest::keyClick(&world.panel(), Qt::Key_Return);
    QCOMPARE(world.search().text(), QString());
    QTRY_VERIFY(world.palette.model().rowCount() > 1);
    QTest::keyClick(&world.panel(), Qt::Key_Return);
    QTRY_VERIFY(world.panel().isHidden());
    QCOMPARE(readFile(world.home.filePath(u"work/shop/shop.txt"_s)), QByteArray("shop"));
  }

  void aClickChoosesARow() {
    World world;
    world.click(1);
    QCOMPARE(world.palette.model().step(), BoilerplateStep::name);
    QCOMPARE(world.palette.model().boilerplate().name, u"web"_s);
    QVERIFY(world.panel().isVisible());
  }

  void escapeLeadsBackAndThenCloses() {
    World world;
    world.click(0);
    QTest::keyClicks(&world.panel(), u"x"_s);
    QTest::keyClick(&world.panel(), Qt::Key_Escape);
    QCOMPARE(world.palette.model().step(), BoilerplateStep::boilerplate);
    QVERIFY(world.panel().isVisible());
    QTest::keyClick(&world.panel(), Qt::Key_Escape);
    QVERIFY(world.panel().isHidden());
  }

  void losingTheKeyboardHides() {
    World world;
    world.native.loseKeyboard();
    QVERIFY(world.panel().isHidden());
  }
};

QTEST_MAIN(TestBoilerplatesPaletteWindow)
#include "test_boilerplates_palette_window.moc"
