#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QTextList>
#include <QTextTable>
#include <QToolButton>

#include <ctime>

#include "support/wear_theme.h"
#include "tools/asking/answer_text_view.h"
#include "tools/asking/exchange_view.h"

using namespace Qt::StringLiterals;

namespace {

struct View : AnswerTextView {
  explicit View(const QString& markdown = {}) : AnswerTextView(u"Answer"_s) {
    resize(440, 100);
    show();
    showMarkdown(markdown);
  }
  QStringList stopNames() const {
    QStringList names;
    for (const QWidget* stop : stops()) names.append(stop->accessibleName());
    return names;
  }
};

}  // namespace

class TestAnswerTextView : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { wearTheme(); }

  void everyCodeBlockIsOneOfItsOwn_data() {
    QTest::addColumn<QString>("markdown");
    QTest::addColumn<QStringList>("blocks");
    const auto row = [](const char* name, const char* markdown, const QStringList& blocks) {
      QTest::newRow(name) << QString::fromUtf8(markdown) << blocks;
    };
    row("neighbours", "```\na\n```\n```\nb\n```\n\n```\nc\n```", {u"a"_s, u"b"_s, u"c"_s});
    row("in one language", "~~~sh\na\n\nb\n~~~\n\n~~~sh\nc\n~~~\n", {u"a\n\nb"_s, u"c"_s});
    row("of two kinds", "```\na\n```\n~~~\nb\n~~~\n\n    c", {u"a"_s, u"b"_s, u"c"_s});
    row("words between", "```\na\n```\nand\n```\nb\n```", {u"a"_s, u"b"_s});
    row("a block in a block", "````md\n```sh\na\n```\n```sh\nb\n```\n````\n\n```\nc\n```",
        {u"```sh\na\n```\n```sh\nb\n```"_s, u"c"_s});
    row("tildes in backticks", "```\n~~~\na\n```\n```\nb", {u"~~~\na"_s, u"b"_s});
    row("not closed yet", "So:\n```py\na\n\nb", {u"a\n\nb"_s});
    row("begun", "```\na\n```\n```", {u"a"_s});
    row("not closed by an item", "```\na\n- ```\nb\n```\n```\nc\n```", {u"a\n- ```\nb"_s, u"c"_s});
    row("in a list", "1. one\n   ```sh\n   a\n   b\n   ```\n2. two\n   ```sh\n   c\n   ```", {u"a\nb"_s, u"c"_s});
    row("items of code", "- ```\n  a\n  ```\n- ```\n  b\n  ```", {u"a"_s, u"b"_s});
    row("in a quote", "> ```\n> a\n> ```\n> ```\n> b\n> ```", {u"a"_s, u"b"_s});
    row("in words", "Use ```a``` and\n```b``` here", {});
  }
  void everyCodeBlockIsOneOfItsOwn() {
    QFETCH(QString, markdown);
    View view(markdown);
    QTEST(view.codeBlocks(), "blocks");
    QVERIFY(!view.toPlainText().contains(QChar(0xFDD2)));
    // Its lines are no items of the list that it stands in.
    for (const QString& text : view.codeBlocks()) {
      const QTextBlock block = view.document()->find(text.section(u'\n', 0, 0)).block();
      QVERIFY(!block.textList());
    }
  }

  void anAnswerLoadsNothingAndRunsNothing() {
    View view;
    QSignalSpy links(&view, &AnswerTextView::linkChosen);
    view.showMarkdown(
        u"<b>bold</b> ![a chart](file:///etc/passwd) <img src='http://127.0.0.1:1/x.png'> [a](javascript:alert) "
        "[b](https://example.com)"_s);
    QCOMPARE(view.toPlainText(), u"<b>bold</b> [a chart] <img src='http://127.0.0.1:1/x.png'> a b"_s);
    QVERIFY(!view.document()->resource(QTextDocument::ImageResource, QUrl(u"file:///etc/passwd"_s)).isValid());
    for (const char* address : {"javascript:alert", "file:///etc/passwd", "https:", "https://example.com"})
      Q_EMIT view.anchorClicked(QUrl(QString::fromLatin1(address)));
    QCOMPARE(links.size(), 1);
  }

  void onlyTheWebAndLettersAreLinks() {
    View view(
        u"[a **b** c](https://x.example/y) [d](file:///etc/passwd) [e](../f) [g](javascript:x) "
        "https://auto.example [h](mailto:x@y.example?subject=S&attach=/etc/passwd) [i](mailto:) "_s);
    QCOMPARE(view.stopNames(), QStringList({u"Link: a b c"_s, u"Link: https://auto.example"_s, u"Link: h"_s}));
    QSignalSpy links(&view, &AnswerTextView::linkChosen);
    for (QWidget* stop : view.stops()) qobject_cast<QAbstractButton*>(stop)->click();
    QStringList opened;
    for (const auto& arguments : links) opened.append(arguments[0].toUrl().toString());
    QCOMPARE(opened,
             QStringList({u"https://x.example/y"_s, u"https://auto.example"_s, u"mailto:x@y.example?subject=S"_s}));
    // What leads nowhere does not look as if it did.
    const QTextCursor dead = view.document()->find(u"d"_s);
    QVERIFY(!dead.charFormat().isAnchor() && !dead.charFormat().fontUnderline());
  }

  void theKeyboardStopsInReadingOrder() {
    View view(u"[one](https://a.example)\n\n```\ntwo\n```\n\nand [three](https://b.example)\n\n```\nfour\n```"_s);
    QCOMPARE(view.stopNames(),
             QStringList({u"Link: one"_s, u"Copy code block 1"_s, u"Link: three"_s, u"Copy code block 2"_s}));
    for (const QWidget* stop : view.stops()) QVERIFY(view.rect().contains(stop->geometry()));
    view.showMarkdown(u"[one](https://a.example)"_s);
    QCOMPARE(view.stopNames(), QStringList(u"Link: one"_s));
  }

  void whatIsMarkedStaysSoWhileTheAnswerGrows() {
    View view(u"Some **bold** words"_s);
    QTextCursor cursor = view.textCursor();
    cursor.setPosition(5);
    cursor.setPosition(9, QTextCursor::KeepAnchor);
    view.setTextCursor(cursor);
    QCOMPARE(view.selectedText(), u"bold"_s);
    view.showMarkdown(u"Some **bold** words, and more"_s);
    QCOMPARE(view.selectedText(), u"bold"_s);
    view.showMarkdown(u"Other words"_s);
    QVERIFY(view.selectedText().isEmpty());
  }

  void howeverOddItIsShownAndSoon_data() {
    QTest::addColumn<QString>("odd");
    QTest::newRow("quotes") << QString(50'000, u'>');
    QTest::newRow("items") << u"- "_s.repeated(3000);
    QTest::newRow("brackets") << QString(50'000, u'[');
    QTest::newRow("fences") << u"```\n"_s.repeated(12'000);
    QTest::newRow("code") << u"```\n"_s + u"line\n"_s.repeated(200'000);
    QTest::newRow("links") << u"[a](http://b.c) "_s.repeated(4000);
    QTest::newRow("dead links") << u"[a](b) "_s.repeated(8000);
    QTest::newRow("images") << u"![a](b) "_s.repeated(8000);
    QTest::newRow("one line") << QString(2'000'000, u'x');
    QTest::newRow("no text") << QString(QChar(0xD800)) + u"\n\0\uFDD0\uFDD2"_s;
  }
  void howeverOddItIsShownAndSoon() {
    QFETCH(QString, odd);
    View view;
    const std::clock_t before = std::clock();
    view.showMarkdown(odd);
    // Twenty times what it takes, for slow machines.
    QVERIFY(std::clock() - before < 4 * CLOCKS_PER_SEC);
  }

  void whatIsLeftOutIsSaid() {
    ExchangeView exchange(u"?"_s);
    exchange.resize(440, 400);
    exchange.show();
    const auto says = [&exchange](const QString& words) {
      const auto labels = exchange.findChildren<QLabel*>();
      return std::ranges::any_of(labels, [&](auto* label) { return label->isVisible() && label->text() == words; });
    };
    const QString note = u"The rest is too long to be shown here. A copy of the answer has all of it."_s;
    exchange.showAnswer(u"```\na\n```"_s, true);
    QVERIFY(!says(note));
    exchange.showAnswer(u"```\na\n```\n\n```\n"_s + u"line\n"_s.repeated(200'000), true);
    QVERIFY(says(note));
    // Half of the block is of no use elsewhere.
    QCOMPARE(exchange.answer().stops().size(), 1U);
  }

  void ordinaryMarkdownLooksWell() {
    View view(
        u"# Heading\n\nSome *words*, `code`, ~~gone~~ and [a link](https://example.com).\n\n"
        "## Lists\n\n1. First\n   - nested\n     - deeper, which is long enough to go on in a second line\n"
        "2. Second\n   ```sh\n   make install\n   ```\n3. Third\n\n"
        "> A quote of\n> two lines\n> > and one in it\n\n- [ ] to do\n- [x] done\n\n"
        "| Name | What it does | Since |\n|---|---|---|\n| `sort` | sorts, and does so with many words in the"
        " cell | C++20 |\n| b | c | d |\n\n---\n\nThe end."_s);
    QCOMPARE(view.codeBlocks(), QStringList(u"make install"_s));
    QVERIFY(view.document()->size().width() <= view.width());
    const auto* table = qobject_cast<QTextTable*>(view.document()->rootFrame()->childFrames().value(0));
    QVERIFY(table && table->format().cellPadding() > 2 && table->format().borderCollapse());
  }
};

QTEST_MAIN(TestAnswerTextView)
#include "test_answer_text_view.moc"
