#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include "cli/command.h"
#include "support/agent_home.h"

using namespace Qt::StringLiterals;

namespace {

/// One run of the command line over a home with transcripts.
struct Run {
  Run(const AgentHome& home, const QStringList& arguments) {
    QTextStream outStream(&out);
    QTextStream errStream(&err);
    const Folders folders{.applicationSupport = home.path()};
    CommandContext context{outStream, errStream, folders, home.path(), [] { return false; }, makeNullPlatform};
    code = runCommandLine(arguments, context);
  }
  QString out;
  QString err;
  int code = -1;
};

bool isPlain(const QString& text) {
  return std::ranges::none_of(
      text, [](QChar character) { return character != u'\n' && character.category() == QChar::Other_Control; });
}

}  // namespace

class TestSessionCommands : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void wrongArgumentsAreNamed() {
    const AgentHome home;
    const struct {
      QStringList words;
      const char* says;
    } cases[] = {
        {{u"sessions"_s, u"--limit"_s, u"0"_s}, "--limit takes a number of at least 1"},
        {{u"sessions"_s, u"--limit"_s, u"-1"_s}, ""},
        {{u"sessions"_s, u"--limit"_s, u"99999999999999999999"_s}, "--limit takes a number of at least 1"},
        {{u"sessions"_s, u"--limit"_s, u"2x"_s}, "--limit takes a number of at least 1"},
        {{u"sessions"_s, u"--agent"_s, u"Claude"_s}, "--agent is claude or codex"},
        {{u"sessions"_s, u"--agent"_s, QString()}, "--agent is claude or codex"},
        {{u"sessions"_s, u"--search"_s, u" \n"_s}, "--search takes a text"},
        {{u"sessions"_s, u"extra"_s}, "it takes no words"},
        {{u"projects"_s, u"extra"_s}, "it takes no words"},
        {{u"resume"_s}, "name one session"},
        {{u"resume"_s, u"a"_s, u"b"_s}, "name one session"},
    };
    for (const auto& [words, says] : cases) {
      const Run run(home, words);
      QCOMPARE(run.code, exit_code::kUsage);
      QVERIFY2(run.err.contains(QLatin1StringView(says)), qPrintable(run.err));
      QVERIFY(run.out.isEmpty());
    }
  }

  void unknownSessionsAreNotFound() {
    AgentHome home;
    home.claude(u"one"_s, 1);
    for (const QString& id : {QString(), u"on"_s, u"../one"_s, u"\x1b[2Jx"_s}) {
      const Run run(home, {u"resume"_s, u"--print"_s, u"--"_s, id});
      QCOMPARE(run.code, exit_code::kFailure);
      QVERIFY2(isPlain(run.err) && run.err.contains("there is no session"_L1), qPrintable(run.err));
    }
    QCOMPARE(Run(home, {u"resume"_s, u"one"_s, u"--print"_s}).out, u"cd '/w' && claude --resume one\n"_s);
  }

  void forgedTranscriptsReachNoTerminal() {
    AgentHome home;
    QByteArray forged =
        "{'type':'session_meta','payload':{'id':'x<ESC>]0;pwned $(id) y','cwd':'/w<ESC>[2J'}}\n"
        "{'payload':{'type':'user_message','message':'needle <ESC>[31m red'}}";
    forged.replace('\'', '"').replace("<ESC>", "\\u001b");
    home.write(u".codex/sessions/rollout-x.jsonl"_s, forged);
    for (const QStringList& words : {QStringList{u"sessions"_s}, {u"sessions"_s, u"--search"_s, u"needle"_s}}) {
      const Run run(home, words);
      QVERIFY2(run.out.contains("needle"_L1) && isPlain(run.out), qPrintable(run.out));
      const Run asJson(home, words + QStringList(u"--json"_s));
      const QJsonObject session = QJsonDocument::fromJson(asJson.out.toUtf8()).array().first().toObject();
      QVERIFY(isPlain(asJson.out));
      QCOMPARE(session["id"_L1].toString(), u"x\u001b]0;pwned $(id) y"_s);
      const QString command = session["resumeCommand"_L1].toString();
      QVERIFY2(command.endsWith(u" && codex resume \"$(printf '%b' 'x\\0033]0;pwned $(id) y')\""_s),
               qPrintable(command));
    }
  }

  void projectsAreFoldersThatExist() {
    AgentHome home;
    home.claude(u"one"_s, 1, home.path());
    home.claude(u"two"_s, 2, u"."_s);
    home.codex(u"three"_s, 3, u"/no/such"_s);
    const QJsonArray rows = QJsonDocument::fromJson(Run(home, {u"projects"_s, u"--json"_s}).out.toUtf8()).array();
    QCOMPARE(rows.size(), 1);
    QCOMPARE(rows.first()["path"_L1].toString(), home.path());
  }
};

QTEST_GUILESS_MAIN(TestSessionCommands)
#include "test_session_commands.moc"
