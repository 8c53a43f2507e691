#include <QAbstractItemModelTester>
#include <QDeadlineTimer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QThreadPool>

#include "support/fake_clock.h"
#include "support/fake_palette.h"
#include "support/fake_presenters.h"
#include "support/files.h"
#include "tools/boilerplates/boilerplates_tool.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct World {
  QTemporaryDir home;
  QString place = home.filePath(u"work"_s);
  BoilerplateStore store{home.filePath(u"boilerplates.json"_s)};
  VibeHistoryStore history{home.filePath(u"history.json"_s)};
  SessionTraceScanner scanner{home.path()};
  FakeSettingsOpener settings;
  FakeToasts toasts;
  FakeClock clock;
  FakeLauncherOpener launcher;
  std::function<void(const QString&)> chosen;
  BoilerplatesPaletteController palette{
      {store, history, scanner, settings, toasts, clock, launcher,
       [this](const QString&, const std::function<void(const QString&)>& answer) { chosen = answer; }},
      &SilentPanel::make};
  BoilerplatesPaletteModel& model = palette.model();

  World() {
    QDir().mkpath(place);
    writeFile(home.filePath(u"web/{{name}}.txt"_s), "{{name}}");
    writeFile(home.filePath(u"tool/x"_s), "x");
    store.update([this](BoilerplateSettings& values) {
      values.add(home.filePath(u"tool"_s));
      values.add(home.filePath(u"web"_s));
      values.lastPlace = place;
    });
  }

  void press(std::uint32_t keyCode) { palette.handleKey(code(keyCode)); }
  void type(const QString& text) { typeInto(palette, text); }
  /// Up to the question where.
  void answer(const QString& name) {
    palette.show();
    type(u"web"_s);
    press(keycode::kReturn);
    type(name);
    press(keycode::kReturn);
    QTRY_VERIFY(model.rowCount() > 1);
  }
  QStringList titles() const {
    QStringList titles;
    for (int row = 0; row < model.rowCount(); ++row) titles.append(model.index(row).data().toString());
    return titles;
  }
};

}  // namespace

class TestBoilerplatesPalette : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void asksWhichUnderWhatNameAndWhere() {
    World world;
    const QAbstractItemModelTester tester(&world.model);
    const QSignalSpy created(&world.palette, &BoilerplatesPaletteController::created);
    world.answer(u"shop"_s);
    QCOMPARE(world.model.step(), BoilerplateStep::place);
    QCOMPARE(world.titles().last(), u"Choose Folder…"_s);
    world.press(keycode::kReturn);
    QTRY_COMPARE(created.size(), 1);
    QCOMPARE(readFile(world.place + u"/shop/shop.txt"_s), QByteArray("shop"));
    QCOMPARE(created.first(), QVariantList({world.place + u"/shop"_s, true}));
    QVERIFY(!world.palette.isShown());
    QCOMPARE(world.toasts.shown.back().first.title, u"Created “shop”"_s);
    QCOMPARE(world.store.value().lastPlace, world.place);
  }

  void theNameIsJudgedWhileItIsTyped() {
    World world;
    world.palette.show();
    world.press(keycode::kReturn);
    QCOMPARE(world.model.rowCount(), 0);
    world.type(u"a/"_s);
    QCOMPARE(world.model.emptyText(), u"A name cannot contain a slash"_s);
    world.press(keycode::kReturn);
    QCOMPARE(world.model.step(), BoilerplateStep::name);
    world.press(keycode::kDelete);
    QCOMPARE(world.titles(), QStringList{u"a"_s});
  }

  void escapeGoesBackStepByStepAndKeepsTheName() {
    World world;
    world.launcher.startedFromLauncher = true;
    world.answer(u"shop"_s);
    world.press(keycode::kEscape);
    QCOMPARE(world.model.step(), BoilerplateStep::name);
    QCOMPARE(world.model.query(), u"shop"_s);
    world.press(keycode::kEscape);
    QCOMPARE(world.titles(), QStringList({u"tool"_s, u"web"_s}));
    world.press(keycode::kEscape);
    QVERIFY(!world.palette.isShown());
    QCOMPARE(world.launcher.shown, QStringList{kBoilerplatesID});
  }

  void anEmptyListLeadsToTheSettings() {
    World world;
    world.store.update([](BoilerplateSettings& values) { values.templates.clear(); });
    world.palette.show();
    world.press(keycode::kReturn);
    QVERIFY(!world.palette.isShown());
    QCOMPARE(world.settings.opened, QStringList{kBoilerplatesID});
  }

  void aFailureIsToldAndAnotherNameMayBeTyped() {
    World world;
    QDir().mkpath(world.place + u"/shop"_s);
    world.answer(u"shop"_s);
    world.press(keycode::kReturn);
    QTRY_COMPARE(world.toasts.shown.size(), 1U);
    QCOMPARE(world.toasts.shown.back().first.title, u"Couldn’t create “shop”"_s);
    QVERIFY(world.toasts.shown.back().first.detail.endsWith(u"it exists already"_s));
    QVERIFY(world.palette.isShown());
    QCOMPARE(world.model.query(), u"shop"_s);
  }

  void escapeEndsACopy() {
    World world;
    for (int i = 0; i < 30; ++i) writeFile(world.home.filePath(u"web/f%1"_s.arg(i)), QByteArray(4 * 1024 * 1024, 'x'));
    world.answer(u"shop"_s);
    world.press(keycode::kReturn);
    QCOMPARE(world.model.step(), BoilerplateStep::copying);
    const auto showsFigures = [&] {
      world.clock.advance(100ms);
      return world.model.emptyText().contains(u"of 31 files"_s);
    };
    // Without the event loop, so that the copy is not over before anybody looks.
    const QDeadlineTimer end(5000);
    while (!showsFigures() && !end.hasExpired()) QThread::yieldCurrentThread();
    QVERIFY(!end.hasExpired());
    world.press(keycode::kEscape);
    QCOMPARE(world.model.step(), BoilerplateStep::place);
    QVERIFY(QThreadPool::globalInstance()->waitForDone(10000));
    QCoreApplication::processEvents();
    QVERIFY(QDir(world.place).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).isEmpty());
    QVERIFY(world.toasts.shown.empty() && !world.palette.isCopying());
  }

  void aPaletteThatWasPutAwayStaysAway() {
    World world;
    const QSignalSpy created(&world.palette, &BoilerplatesPaletteController::created);
    world.answer(u"shop"_s);
    world.press(keycode::kReturn);
    world.palette.hide();
    QTRY_COMPARE(created.size(), 1);
    QCOMPARE(created.first(), QVariantList({world.place + u"/shop"_s, false}));
  }

  void anyFolderMayBeChosen() {
    World world;
    const QSignalSpy created(&world.palette, &BoilerplatesPaletteController::created);
    world.answer(u"shop"_s);
    world.press(keycode::kUp);
    world.press(keycode::kReturn);
    QVERIFY(!world.palette.isShown());
    const QString other = world.home.filePath(u"other"_s);
    QDir().mkpath(other);
    world.chosen(other);
    QTRY_COMPARE(world.toasts.shown.size(), 1U);
    QCOMPARE(readFile(other + u"/shop/shop.txt"_s), QByteArray("shop"));
    QCOMPARE(world.store.value().lastPlace, other);
    QCOMPARE(created.first(), QVariantList({other + u"/shop"_s, true}));
  }
};

QTEST_GUILESS_MAIN(TestBoilerplatesPalette)
#include "test_boilerplates_palette.moc"
