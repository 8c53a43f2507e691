#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <sys/stat.h>

#include "support/agent_home.h"
#include "tools/session_history/prompt_text.h"
#include "tools/session_history/session_scanner.h"
#include "tools/session_history/transcript_reader.h"

using namespace Qt::StringLiterals;

namespace {

/// The ids of what a scan of `home` finds.
QStringList ids(const AgentHome& home, std::size_t limit = 20, bool claudeToo = true, bool codexToo = true) {
  QStringList found;
  for (const VibeSession& session : SessionTraceScanner(home.path()).recentSessions(limit, claudeToo, codexToo))
    found.append(session.id);
  return found;
}

QStringList lines(const QString& path, std::optional<std::string_view> (TranscriptReader::*next)()) {
  QStringList found;
  TranscriptReader reader;
  if (!reader.open(path.toStdString())) return {u"unreadable"_s};
  while (const auto line = (reader.*next)())
    found.append(QString::fromUtf8(line->data(), static_cast<qsizetype>(line->size())).left(8));
  return found;
}

}  // namespace

class TestSessionScanner : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void mergesAgentsNewestFirst() {
    AgentHome home;
    for (int number = 0; number < 40; ++number) home.claude(u"s%1"_s.arg(number, 2, 10, QChar(u'0')), 100 + number);
    for (int number = 0; number < 5; ++number) home.codex(u"c%1"_s.arg(number), number);
    const QStringList newest = ids(home, 30);
    QCOMPARE(newest.size(), 30);
    QCOMPARE(newest.first(), u"s39"_s);
    QCOMPARE(newest.last(), u"s10"_s);
    QCOMPARE(ids(home, 30, false), QStringList({u"c4"_s, u"c3"_s, u"c2"_s, u"c1"_s, u"c0"_s}));
    QCOMPARE(ids(home, 100).size(), 45);
    QVERIFY(ids(home, 30, false, false).isEmpty());
  }

  void leavesOutWhatIsNoSession() {
    AgentHome home;
    home.claude(u"agent-sub"_s, 5);
    home.claude(u"good"_s, 4);
    home.write(u".claude/projects/-w/notes.txt"_s, "{}", 6);
    home.write(u".claude/projects/-w/good/subagents/deep.jsonl"_s, R"({"cwd":"/w"})", 7);
    QFile small(home.path() + u"/.claude/projects/-w/small.jsonl"_s);
    QVERIFY(small.open(QFile::WriteOnly));
    small.write(R"({"type":"user","message":{"content":"x"},"cwd":"/w"})");
    home.write(u".codex/sessions/2026/sub.jsonl"_s,
               R"({"type":"session_meta","payload":{"id":"x","cwd":"/c","source":{"subagent":{}}}})"
               "\n"
               R"({"payload":{"type":"user_message","message":"m"}})"
               "\n");
    QCOMPARE(ids(home), QStringList(u"good"_s));
  }

  void ofOneIDTheNewestCountsAndTakesOnePlace() {
    AgentHome home;
    const QString path = home.codex(u"same"_s, 3);
    QVERIFY(QFile::copy(path, QFileInfo(path).path() + u"/rollout-copy.jsonl"_s));
    home.codex(u"older"_s, 1);
    QCOMPARE(ids(home, 2), QStringList({u"same"_s, u"older"_s}));
  }

  void hostileFoldersEndTheScanLikeOthers() {
    AgentHome home;
    home.claude(u"good"_s, 1);
    home.codex(u"fine"_s, 0);
    const QString projects = home.path() + u"/.claude/projects"_s;
    const QString sessions = home.path() + u"/.codex/sessions"_s;
    QVERIFY(QFile::link(projects, projects + u"/-w/loop"_s));
    QVERIFY(QFile::link(sessions, sessions + u"/2026/loop"_s));
    QVERIFY(QFile::link(u"/nowhere"_s, projects + u"/-w/broken.jsonl"_s));
    QCOMPARE(mkfifo((projects + u"/-w/pipe.jsonl"_s).toLocal8Bit().constData(), 0600), 0);
    QVERIFY(QDir().mkpath(projects + u"/-w/folder.jsonl"_s));
    QVERIFY(QDir().mkpath(projects + u"/-closed"_s) && QDir().mkpath(sessions + u"/closed"_s));
    for (const QString& closed : {projects + u"/-closed"_s, sessions + u"/closed"_s})
      QVERIFY(QFile::setPermissions(closed, {}));
    QCOMPARE(mkfifo((projects + u"/pipe"_s).toLocal8Bit().constData(), 0600), 0);
    QCOMPARE(ids(home), QStringList({u"good"_s, u"fine"_s}));
  }

  void neitherCutLineIsRead() {
    AgentHome home;
    const QByteArray line = QByteArray(999, 'a') + '\n';
    QByteArray bytes;
    for (int number = 0; number < 600; ++number)
      bytes += QByteArray::number(number).leftJustified(8, ' ') + line.mid(8);
    const QString path = home.write(u"large.jsonl"_s, bytes);
    const QStringList head = lines(path, &TranscriptReader::nextHeadLine);
    const QStringList tail = lines(path, &TranscriptReader::previousTailLine);
    QCOMPARE(head.size(), 262);
    QCOMPARE(head.last().trimmed(), u"261"_s);
    QCOMPARE(tail.size(), 262);
    QCOMPARE(tail.first().trimmed(), u"599"_s);
    QCOMPARE(tail.last().trimmed(), u"338"_s);
    const QString exact = home.write(u"exact.jsonl"_s, bytes.left(262'143) + '\n');
    QCOMPARE(lines(exact, &TranscriptReader::nextHeadLine).size(), 263);
    QCOMPARE(lines(exact, &TranscriptReader::previousTailLine).size(), 263);
  }

  void aHugeLineHidesNeitherEnd() {
    AgentHome home;
    const QString path = home.claude(u"huge"_s, 1);
    QFile file(path);
    QVERIFY(file.open(QFile::ReadWrite));
    // A hole: one line of 100 MB that takes no place on the disk.
    QVERIFY(file.resize(100'000'000) && file.seek(file.size()));
    file.write("\n{\"type\":\"ai-title\",\"aiTitle\":\"At the end\"}\n{\"type\":\"ai-title\",\"aiTitle\":\"torn");
    file.close();
    const auto sessions = SessionTraceScanner(home.path()).recentSessions(5, true, true);
    QCOMPARE(sessions.size(), 1);
    QCOMPARE(sessions.front().title, u"At the end"_s);
    QCOMPARE(sessions.front().cwd, u"/w"_s);
  }

  void promptsBecomeOneLine() {
    QCOMPARE(cleanPrompt(u"  one\n two \t three "_s), u"one two three"_s);
    QVERIFY(!cleanPrompt(u"<command-name>/clear"_s) && !cleanPrompt(u" Caveat: x"_s) && !cleanPrompt(u" \n"_s));
    QCOMPARE(cleanPrompt(u"👩‍💻"_s.repeated(500)), u"👩‍💻"_s.repeated(160));
  }

  void resumesInTheSessionsFolder() {
    VibeSession session{u"1234"_s, SessionAgent::claude, u"t"_s, u"/Users/a/it's"_s, {}, {}, {}};
    QCOMPARE(session.resumeCommand(), uR"(cd '/Users/a/it'\''s' && claude --resume 1234)"_s);
    QCOMPARE(session.projectName(), u"it's"_s);
    session = {u"5"_s, SessionAgent::codex, u"t"_s, {}, {}, {}, {}};
    QCOMPARE(session.resumeCommand(), u"codex resume 5"_s);
    QCOMPARE(session.projectName(), u"unknown project"_s);
    session.id = u"x; rm -rf ~"_s;
    QCOMPARE(session.resumeCommand(), u"codex resume 'x; rm -rf ~'"_s);
  }

  void aShellComesToTheFolderWhateverItIsCalled() {
    for (const QString& name :
         {u"it's\n"_s, u"a\\n%b \"$HOME\" `id`"_s, u"\u009b2J\u001b[m\t"_s, u" -x\n\n"_s, u"é😀"_s}) {
      const QTemporaryDir home;
      const QString folder = home.filePath(name);
      QVERIFY(QDir().mkpath(folder));
      VibeSession session{u"1"_s, SessionAgent::claude, u"t"_s, folder, {}, {}, {}};
      QString command = session.resumeCommand();
      QVERIFY(
          std::ranges::none_of(command, [](QChar character) { return character.category() == QChar::Other_Control; }));
      command.replace(u"claude --resume 1"_s, u"pwd && echo ."_s);
      QProcess shell;
      shell.start(u"/bin/sh"_s, {u"-c"_s, command});
      QVERIFY(shell.waitForFinished());
      QCOMPARE(QString::fromUtf8(shell.readAllStandardOutput()), folder + u"\n.\n"_s);
    }
  }
};

QTEST_APPLESS_MAIN(TestSessionScanner)
#include "test_session_scanner.moc"
