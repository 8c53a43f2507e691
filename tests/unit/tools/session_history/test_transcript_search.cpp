#include <QTest>

#include "support/agent_home.h"
#include "tools/session_history/line_stream.h"
#include "tools/session_history/transcript_search.h"

using namespace Qt::StringLiterals;

namespace {

QStringList hits(const AgentHome& home, const SearchRequest& request) {
  QStringList found;
  searchTranscripts(home.path(), request, [&](const SearchHit& hit) { found.append(hit.session.id); });
  return found;
}

QByteArray claudeSaid(const QByteArray& inJson) {
  return R"({"type":"user","message":{"content":"hello"},"cwd":"/w"})"
         "\n"
         R"({"type":"assistant","message":{"content":[{"type":"text","text":")" +
         inJson +
         R"("}]}})"
         "\n";
}

}  // namespace

class TestTranscriptSearch : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void findsTextHoweverItIsWritten_data() {
    QTest::addColumn<QByteArray>("said");
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<bool>("found");
    const auto row = [](const char* name, const char* said, const QString& wanted, bool found = true) {
      QTest::newRow(name) << QByteArray(said) << wanted << found;
    };
    row("letter case", "Keep the ORDER", u"keep The order"_s);
    row("words apart", R"(keep\n\t the  order)", u"keep the order"_s);
    row("wanted words apart", "keep the order", u" keep  the\norder "_s);
    row("within words", "overkeep the orders", u"keep the order"_s);
    row("a word between", "keep the old order", u"keep the order"_s, false);
    row("the first word again before", "keep keep the order", u"keep the order"_s);
    row("signs", R"(call \"f(x)\", c:\\new/old)", u"\"F(x)\", C:\\new/old"_s);
    row("other signs", "a-b", u"a+b"_s, false);
    row("escaped letters", R"(na\u00efve worker)", u"NAÏVE work"_s);
    row("decomposed", "cafe\xcc\x81 now", u"café now"_s);
    row("wanted decomposed", "caf\xc3\xa9 now", u"cafe\u0301 now"_s);
    row("no letter of ASCII", "\xd0\x9f\xd1\x80\xd0\xb8\xd0\xb2\xd0\xb5\xd1\x82", u"привет"_s);
    row("sharp s",
        "Hauptstra\xc3\x9f"
        "e 1",
        u"hauptstraße 1"_s);
    row("signs alone", "a => b", u"=>"_s);
    row("half a pair", R"(x \ud83d keep it)", u"keep it"_s);
  }

  void findsTextHoweverItIsWritten() {
    QFETCH(const QByteArray, said);
    QFETCH(const QString, wanted);
    AgentHome home;
    home.write(u".claude/projects/-w/one.jsonl"_s, claudeSaid(said));
    QTEST(!hits(home, {wanted}).isEmpty(), "found");
  }

  void looksAtWhatWasSaidOnly() {
    AgentHome home;
    home.write(u".claude/projects/-w/one.jsonl"_s,
               claudeSaid("x") + R"({"type":"user","message":{"content":"secret"},"toolUseResult":"secret"})"
                                 "\n"
                                 R"({"type":"assistant","isSidechain":true,"message":{"content":"secret"}})");
    QVERIFY(hits(home, {u"secret"_s}).isEmpty());
    QVERIFY(hits(home, {u"assistant"_s}).isEmpty());
    QVERIFY(hits(home, {u" \n"_s}).isEmpty());
  }

  void tellsTheNewestFirstAndNoMoreThanWanted() {
    AgentHome home;
    for (int number = 0; number < 30; ++number) home.claude(u"c%1"_s.arg(number), 2 * number);
    for (int number = 0; number < 30; ++number) home.codex(u"x%1"_s.arg(number), 2 * number + 1);
    QCOMPARE(hits(home, {.text = u"e"_s, .limit = 3}), QStringList({u"x29"_s, u"c29"_s, u"x28"_s}));
    QCOMPARE(hits(home, {.text = u"hello"_s}).size(), 30);
    QCOMPARE(hits(home, {.text = u"e"_s, .includeCodex = false, .limit = 1}), QStringList(u"c29"_s));
  }

  void passesOverHugeLinesAndGoesOn() {
    AgentHome home;
    const QByteArray huge(static_cast<qsizetype>(LineStream::kLongestLine + LineStream::kLongestLine / 8), 'x');
    home.write(u".claude/projects/-w/one.jsonl"_s,
               claudeSaid("before") + claudeSaid("far " + huge) + claudeSaid("after"));
    QCOMPARE(hits(home, {u"after"_s}), QStringList(u"one"_s));
    QCOMPARE(hits(home, {u"before"_s}), QStringList(u"one"_s));
    QVERIFY(hits(home, {u"far"_s}).isEmpty());
  }

  void showsThePlaceInOneLine() {
    AgentHome home;
    const QByteArray lead = QByteArray("\xf0\x9f\x98\x80").repeated(40);
    home.write(u".claude/projects/-w/one.jsonl"_s, claudeSaid(lead + R"(a\u0007 needle)"));
    QString excerpt;
    searchTranscripts(home.path(), {u"needle"_s}, [&](const SearchHit& hit) { excerpt = hit.excerpt; });
    QVERIFY2(excerpt.startsWith(u"…😀"_s), qPrintable(excerpt));
    QVERIFY2(excerpt.endsWith(uR"(😀a\u{7} needle)"_s), qPrintable(excerpt));
  }

  void canBeStopped() {
    AgentHome home;
    for (int number = 0; number < 300; ++number) home.claude(u"c%1"_s.arg(number), number);
    std::stop_source stop;
    int found = 0;
    const auto count = [&](const SearchHit&) {
      ++found;
      stop.request_stop();
    };
    searchTranscripts(home.path(), {u"hello"_s}, count, stop.get_token());
    QCOMPARE(found, 1);
  }
};

QTEST_APPLESS_MAIN(TestTranscriptSearch)
#include "test_transcript_search.moc"
