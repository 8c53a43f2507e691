#include <QTemporaryDir>
#include <QTest>

#include "support/files.h"
#include "tools/session_history/transcript_parsers.h"

using namespace Qt::StringLiterals;

namespace {

constexpr const char* kMessage = "{'payload':{'type':'user_message','message':'message'}}";
constexpr const char* kItem =
    "{'payload':{'type':'item_completed','item':{'type':'UserMessage','content':[{'type':'text','text':'item'}]}}}";
constexpr const char* kResponse =
    "{'type':'response_item','payload':{'role':'user','content':[{'type':'input_text','text':'response'}]}}";

/// A transcript is written with the other quotes. `@message`, `@item` and `@response` stand for the forms of a prompt
/// to Codex, `@far` for more than is read at one end of a file.
QByteArray transcript(QByteArray text) {
  text.replace("@message", kMessage).replace("@item", kItem).replace("@response", kResponse).replace('\'', '"');
  return text.replace("@far\n", (QByteArray(999, 'x') + '\n').repeated(300));
}

using Parser = std::optional<VibeSession> (*)(const TranscriptFile&, ParserScratch&);

/// What is read of it, in words: "title | folder | branch".
QString read(Parser parse, const QString& name, const QByteArray& text) {
  const QTemporaryDir home;
  const QString path = home.filePath(name);
  if (!writeFile(path, transcript(text))) qFatal("cannot be written");
  ParserScratch scratch;
  const auto session = parse({QFile::encodeName(path).toStdString(), {}}, scratch);
  if (!session) return u"none"_s;
  if (!name.contains(session->id)) qFatal("it has the id of another");
  return u"%1 | %2 | %3"_s.arg(session->title, session->cwd, session->gitBranch.value_or(u"-"_s));
}

void row(const char* name, const char* text, const char8_t* words) {
  QTest::newRow(name) << QByteArray(text) << QString::fromUtf8(words);
}

}  // namespace

/// What the agents' transcripts say of their sessions, line by line.
class TestTranscripts : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void claude_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("words");
    row("the user's newest title before all others",
        "{'type':'user','message':{'content':'a prompt'},'cwd':'/w','gitBranch':'main'}\n"
        "{'type':'custom-title','customTitle':'older'}\n{'type':'custom-title','customTitle':' new\\n er '}\n"
        "{'type':'ai-title','aiTitle':'by AI'}\n{'type':'custom-title','customTitle':''}\n",
        u8"new er | /w | main");
    row("the AI's newest before a prompt",
        "{'type':'user','message':{'content':'a prompt'},'cwd':'/w','gitBranch':''}\n"
        "{'type':'ai-title','aiTitle':'one'}\n{'type':'ai-title','aiTitle':'two'}\n",
        u8"two | /w | -");
    row("the first typed prompt before the last one",
        "{'type':'user','message':{'content':'by a machine'},'isMeta':true,'cwd':'/w'}\n"
        "{'type':'user','message':{'content':'<command-name>/clear</command-name>'}}\n"
        "{'type':'user','message':{'content':'elsewhere'},'isSidechain':true}\n"
        "{'type':'user','message':{'content':[{'type':'text','text':'of a tool'}]},'toolUseResult':{}}\n"
        "{'type':'user','message':{'content':[{'type':'image'},{'type':'text','text':'Caveat: x'},"
        "{'type':'text','text':'typed'}]}}\n"
        "{'type':'user','message':{'content':'later'}}\n{'type':'last-prompt','lastPrompt':'last'}\n",
        u8"typed | /w | -");
    row("the last prompt before a machine's",
        "{'type':'user','message':{'content':'a summary'},'isCompactSummary':true,'cwd':'/w'}\n"
        "{'type':'last-prompt','lastPrompt':'last'}\n{'type':'last-prompt','leafUuid':'l'}\n",
        u8"last | /w | -");
    row("a machine's before none", "{'type':'user','message':{'content':'a summary'},'isMeta':true,'cwd':'/w'}\n",
        u8"a summary | /w | -");
    row("none without a title", "{'type':'user','message':{'content':'  '},'cwd':'/w'}\n", u8"none");
    row("none without a folder", "{'type':'ai-title','aiTitle':'one'}\n{'cwd':''}\n", u8"none");
    row("the first folder",
        "{'cwd':'/w','gitBranch':'a'}\n{'cwd':'/v','gitBranch':'b'}\n"
        "{'type':'ai-title','aiTitle':'one'}\n",
        u8"one | /w | a");
    row("far behind, the folder that the transcript's is named after",
        "@far\n{'cwd':'/home/it\\u0027s','gitBranch':'a'}\n{'cwd':'/home/else','gitBranch':'b'}\n"
        "{'type':'ai-title','aiTitle':'one'}\n",
        u8"one | /home/it's | a");
    row("or none", "@far\n{'cwd':'/home/else'}\n{'type':'ai-title','aiTitle':'one'}\n", u8"none");
    row("damaged lines are passed over",
        "[{'cwd':'/v'}]\n{'cwd':'/v'}{'cwd':'/v'}\n{'cwd':'/v\n\n{'cwd':'/w'}\r\n"
        "{'type':'ai-title','aiTitle':'one'}\n{'type':'ai-title','aiTitle':3}\n{'type':'ai-title','aiTitle':'tor",
        u8"one | /w | -");
    row("damaged text is not",
        "{'type':'user','message':{'content':'\xff half \\ud83d \\uDE00 \\ud83d\\ude00'},'cwd':'/w'}\n",
        u8"\ufffd half \ufffd \ufffd 😀 | /w | -");
  }
  void claude() {
    QFETCH(const QByteArray, text);
    QTEST(read(parseClaude, u"-home-it-s/0b6e9c50.jsonl"_s, text), "words");
  }

  void codex_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("words");
    row("a message before an item, an item before a response",
        "{'type':'session_meta','payload':{'id':'1b6e9c50','cwd':'/w','git':{'branch':'main'},'branch':'b'}}\n"
        "@response\n@item\n@message\n",
        u8"message | /w | main");
    row("the item before the response",
        "{'type':'session_meta','payload':{'cwd':'/w','thread_source':'user','git':null,'branch':'b'}}\n"
        "@response\n@item\n",
        u8"item | /w | b");
    row("neither instructions nor what the agent says",
        "{'type':'session_meta','payload':{'cwd':'/w'}}\n"
        "{'payload':{'type':'agent_message','message':'\\'user_message\\''}}\n"
        "{'type':'response_item','payload':{'role':'assistant','content':[{'type':'input_text','text':'user'}]}}\n"
        "{'type':'response_item','payload':{'role':'user','content':[{'type':'input_text','text':' # AGENTS.md x'},"
        "{'type':'input_text','text':'files\\n## My request for Codex:\\nrename'}]}}\n",
        u8"rename | /w | -");
    row("the folder of the first turn that has one",
        "{'type':'session_meta','payload':{'cwd':''}}\n{'type':'turn_context','payload':{'model':'m'}}\n"
        "{'type':'turn_context','payload':{'cwd':'/w'}}\n{'type':'turn_context','payload':{'cwd':'/v'}}\n@message\n",
        u8"message | /w | -");
    row("none of a sub-agent", "{'type':'session_meta','payload':{'cwd':'/w','source':{'subagent':{}}}}\n@message\n",
        u8"none");
    row("nor of another thread's",
        "{'type':'session_meta','payload':{'cwd':'/w','thread_source':'subagent'}}\n@message\n", u8"none");
    row("the first record counts",
        "{'id':'T','type':'other','text':'session_meta'}\n{'type':'session_meta','payload':{'cwd':'/w'}}\n"
        "{'type':'session_meta','payload':{'cwd':'/v','source':{'subagent':{}}}}\n@message\n",
        u8"message | /w | -");
    row("far behind, the first prompt and the first folder",
        "{'type':'session_meta','payload':{}}\n@far\n{'type':'turn_context','payload':{'cwd':'/w'}}\n"
        "{'type':'turn_context','payload':{'cwd':'/v'}}\n{'payload':{'type':'user_message','message':'first'}}\n"
        "{'payload':{'type':'user_message','message':'second'}}\n",
        u8"first | /w | -");
    row("a prompt of the head before all of the tail",
        "@response\n@far\n{'type':'turn_context','payload':{'cwd':'/w'}}\n"
        "{'payload':{'type':'user_message','message':'far'}}\n",
        u8"response | /w | -");
    row("none without a folder", "@message\n", u8"none");
  }
  void codex() {
    QFETCH(const QByteArray, text);
    const QString name = u"rollout-2026-11-20T09-00-00-1b6e9c50-9d4c-4a52-8f7c-0e2e1f2d3c4b.jsonl"_s;
    QTEST(read(parseCodex, name, text), "words");
  }
};

QTEST_APPLESS_MAIN(TestTranscripts)
#include "test_transcripts.moc"
