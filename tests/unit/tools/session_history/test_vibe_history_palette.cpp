#include <QAbstractItemModelTester>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

#include "base/relative_time.h"
#include "support/agent_home.h"
#include "support/fake_clock.h"
#include "support/fake_palette.h"
#include "support/fake_platform.h"
#include "support/fake_presenters.h"
#include "tools/keystrokes/command_typer.h"
#include "tools/keystrokes/keystroke_sender.h"
#include "tools/session_history/vibe_history_tool.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QDateTime kNow(QDate(2026, 11, 21), QTime(15, 0));

VibeSession session(const QString& id, const QDateTime& when, const QString& cwd = u"/w/shop"_s,
                    SessionAgent agent = SessionAgent::claude) {
  const FileTime time(std::chrono::milliseconds(when.toMSecsSinceEpoch()));
  return {id, agent, u"Title of "_s + id, cwd, u"main"_s, time, id.toStdString()};
}

QStringList ids(const VibeHistoryPaletteModel& model) {
  QStringList ids;
  for (const VibeSession& session : model.filtered()) ids.append(session.id);
  return ids;
}

/// Keeps all work in the background from beginning.
class HeldBackground {
 public:
  HeldBackground() {
    QThreadPool& pool = *QThreadPool::globalInstance();
    for (int count = 0; count < pool.maxThreadCount(); ++count) pool.start([this] { gate_.acquire(); });
  }
  ~HeldBackground() {
    letGo();
    QThreadPool::globalInstance()->waitForDone();
  }
  HeldBackground(const HeldBackground&) = delete;
  HeldBackground& operator=(const HeldBackground&) = delete;

  void letGo() { gate_.release(QThreadPool::globalInstance()->maxThreadCount()); }

 private:
  QSemaphore gate_;
};

}  // namespace

class TestVibeHistoryPalette : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void groupsByAgeThenByProject() {
    VibeHistoryPaletteModel model;
    const QAbstractItemModelTester tester(&model);
    model.beginLoading(kNow);
    model.finishLoading(
        {session(u"a"_s, kNow.addSecs(-60)), session(u"b"_s, kNow.addSecs(-3600), u"/w/blog"_s),
         session(u"c"_s, kNow.addSecs(-7200)), session(u"d"_s, kNow.addDays(-1)), session(u"e"_s, kNow.addDays(-6)),
         session(u"f"_s, kNow.addDays(-7)), session(u"g"_s, kNow.addDays(-29)), session(u"h"_s, kNow.addDays(-30))},
        {u"/w/blog"_s});
    QCOMPARE(ids(model), QStringList({u"a"_s, u"c"_s, u"b"_s, u"d"_s, u"e"_s, u"f"_s, u"g"_s, u"h"_s}));
    QStringList titles;
    for (const DateGroup& group : model.groups()) titles.append(group.title);
    QCOMPARE(titles,
             QStringList({u"Today"_s, u"Yesterday"_s, u"Previous 7 Days"_s, u"Previous 30 Days"_s, u"Older"_s}));
    QCOMPARE(model.index(0).data(VibeHistoryPaletteModel::ProjectGroupRole), u"shop"_s);
    QVERIFY(model.index(1).data(VibeHistoryPaletteModel::ProjectGroupRole).isNull());
    QVERIFY(model.index(2).data(VibeHistoryPaletteModel::DateGroupRole).isNull());
    QVERIFY(model.index(2).data(VibeHistoryPaletteModel::IsFolderGoneRole).toBool());
  }

  void searchesTitleProjectAndAgentOnly() {
    VibeHistoryPaletteModel model;
    model.beginLoading(kNow);
    model.setQuery(u"CODEX"_s);
    model.finishLoading({session(u"a"_s, kNow, u"/deep/shop"_s), session(u"b"_s, kNow, u"/w/x"_s, SessionAgent::codex),
                         session(u"c"_s, kNow, u"/w/codex-fork"_s)},
                        {});
    QCOMPARE(ids(model), QStringList({u"b"_s, u"c"_s}));
    for (const QString& nowhere : {u"deep"_s, u"main"_s}) {
      model.setQuery(nowhere);
      QCOMPARE(model.emptyText(), u"No matching sessions"_s);
    }
  }

  void timesStayRightWhileOpen() {
    VibeHistoryPaletteModel model;
    model.beginLoading(kNow);
    model.finishLoading({session(u"a"_s, kNow.addSecs(-50)), session(u"b"_s, kNow.addSecs(-100))}, {});
    model.select(1);
    QCOMPARE(model.index(0).data(VibeHistoryPaletteModel::TimeRole), u"now"_s);
    model.setNow(kNow.addSecs(15));
    QCOMPARE(model.index(0).data(VibeHistoryPaletteModel::TimeRole), u"1 min ago"_s);
    model.setNow(kNow.addSecs(10 * 3600));
    QCOMPARE(model.groups().front().title, u"Yesterday"_s);
    QCOMPARE(model.selectionIndex(), 1);
    QCOMPARE(relativeTime(kNow.addDays(-3), kNow), u"3 days ago"_s);
    QCOMPARE(relativeTime(kNow.addSecs(500), kNow), u"now"_s);
  }

  void midnightMovesRowsAndNotTheSelection() {
    VibeHistoryPaletteModel model;
    model.beginLoading(kNow);
    model.finishLoading(
        {session(u"a"_s, kNow.addDays(-1), u"/w/shop"_s), session(u"b"_s, kNow.addDays(-2), u"/w/blog"_s),
         session(u"c"_s, kNow.addDays(-2), u"/w/shop"_s)},
        {});
    model.select(1);
    model.setNow(kNow.addDays(1));
    QCOMPARE(ids(model), QStringList({u"a"_s, u"c"_s, u"b"_s}));
    QCOMPARE(model.groups().front().title, u"Previous 7 Days"_s);
    QCOMPARE(model.selectedSession()->id, u"b"_s);
  }

  void hostileFoldersAreShownAndTypedSpelledOut() {
    const VibeSession evil = session(u"a"_s, kNow, u"/w/a\n\u0003b"_s);
    VibeHistoryPaletteModel model;
    model.beginLoading(kNow);
    model.finishLoading({evil}, {});
    QCOMPARE(model.index(0).data(VibeHistoryPaletteModel::ProjectGroupRole), u"a\\n\\u{3}b"_s);
    const QString folder = uR"=("$(printf '%b' '/w/a\0012\0003b')")="_s;
    QCOMPARE(evil.resumeCommand(), u"cd %1 && claude --resume a"_s.arg(folder));
  }

  void typesTheSelectedSession() {
    World world;
    world.load();
    world.palette.handleKey(code(keycode::kReturn, true));
    world.clock.advance(120ms);
    QCOMPARE(world.events.sequences,
             std::vector<KeySequence>{KeystrokeSender::sequence(u"cd '/c' && codex resume two"_s, true)});
  }

  void copiesAndSaysSo() {
    World world;
    world.load();
    world.palette.handleKey(code(keycode::kDown));
    QVERIFY(world.palette.handleKey(letter(u'C', true)));
    QCOMPARE(world.pasteboard.texts, QStringList(u"cd '/w' && claude --resume one"_s));
    const auto& [toast, duration] = world.toasts.shown.front();
    QCOMPARE(toast.title, u"Resume command copied"_s);
    QCOMPARE(toast.icon, u"doc.on.clipboard.fill"_s);
    QCOMPARE(duration, 4s);
    QVERIFY(!world.palette.isShown() && world.events.sequences.empty());
  }

  void whatIsTypedWhileItLoadsCounts() {
    World world;
    HeldBackground held;
    world.palette.show();
    for (const QChar character : u"Claudia"_s) world.palette.handleKey(letter(character));
    world.palette.handleKey(code(keycode::kReturn));
    for (int count = 0; count < 2; ++count) world.palette.handleKey(code(keycode::kDelete));
    world.palette.handleKey(code(keycode::kDown));
    world.palette.handleKey(letter(u'c', true));
    QCoreApplication::processEvents();
    QCOMPARE(world.palette.model().emptyText(), u"Reading your conversations…"_s);
    QVERIFY(world.palette.isShown() && world.pasteboard.texts.isEmpty());
    held.letGo();
    QTRY_COMPARE(ids(world.palette.model()), QStringList(u"one"_s));
    QCOMPARE(world.palette.model().query(), u"Claud"_s);
  }

  void aScanThatIsOvertakenShowsNothing() {
    World world;
    HeldBackground held;
    world.palette.show();
    world.palette.handleKey(code(keycode::kEscape));
    world.settings.update([](VibeHistorySettings& settings) { settings.includeCodex = false; });
    world.palette.show();
    QSignalSpy changes(&world.palette.model(), &PaletteListModel::changed);
    held.letGo();
    QTRY_VERIFY(!world.palette.model().isLoading());
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    QCOMPARE(ids(world.palette.model()), QStringList(u"one"_s));
    QCOMPARE(changes.size(), 1);
  }

  void readsNothingThatIsSwitchedOff() {
    World world;
    world.settings.update([](VibeHistorySettings& settings) { settings.includeCodex = false; });
    world.load();
    QCOMPARE(ids(world.palette.model()), QStringList(u"one"_s));
    world.settings.update([](VibeHistorySettings& settings) { settings.includeClaude = false; });
    world.palette.show();
    QTRY_COMPARE(world.palette.model().emptyText(), u"No recent Claude Code or Codex sessions found"_s);
  }

  void previewsTheSelectedSession() {
    World world;
    world.load();
    QTRY_COMPARE(world.palette.preview().firstPrompt, u"rename"_s);
    world.palette.handleKey(code(keycode::kDown));
    QCOMPARE(world.palette.preview().firstPrompt, QString());
    QTRY_COMPARE(world.palette.preview().lastPrompt, u"hello"_s);
  }

  void bothSettingsKeysAreRequired() {
    World world;
    QFile file(world.directory.filePath(u"vibe.json"_s));
    QVERIFY(file.open(QFile::WriteOnly));
    file.write(R"({"includeCodex":false})");
    file.close();
    QVERIFY(VibeHistoryStore(file.fileName()).value().includeCodex);
  }

 private:
  struct World {
    World() {
      home.claude(u"one"_s, 1);
      home.codex(u"two"_s, 2);
    }
    void load() {
      palette.show();
      QTRY_VERIFY(!palette.model().isLoading());
    }

    AgentHome home;
    QTemporaryDir directory;
    FakeClock clock;
    FakeKeyEvents events;
    FakePermissions permissions;
    KeystrokeSender sender{events, permissions};
    FakePasteboard pasteboard;
    FakeToasts toasts;
    CommandTyper typer{sender, pasteboard, toasts};
    FakeLauncherOpener launcher;
    VibeHistoryStore settings{directory.filePath(u"settings.json"_s)};
    SessionTraceScanner scanner{home.path()};
    VibeHistoryPaletteController palette{{settings, scanner, typer, pasteboard, toasts, clock, launcher},
                                         &SilentPanel::make};
  };
};

QTEST_GUILESS_MAIN(TestVibeHistoryPalette)
#include "test_vibe_history_palette.moc"
