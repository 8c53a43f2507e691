#include <QApplication>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

#include "core/ui/check_control.h"
#include "core/ui/panel_menu.h"
#include "support/controls.h"
#include "support/fake_panel_window.h"
#include "support/quick_question_world.h"
#include "support/wear_theme.h"
#include "tools/ask_ai/quick_question_panel.h"
#include "tools/ask_ai/quick_question_settings_view.h"
#include "tools/ask_ai/quick_question_view.h"
#include "tools/asking/answer_text_view.h"
#include "tools/asking/question_field.h"
#include "tools/asking/transcript_view.h"

using namespace Qt::StringLiterals;

namespace {

const QString kAnswer =
    u"Use `std::ranges::sort` with a **projection**:\n\n"
    "```cpp\nstruct Tool { QString name; int uses; };\n\nstd::ranges::sort(tools, {}, &Tool::name);\n```\n\n"
    "- it compares the names alone\n- the order of equal ones is *not* kept: use `stable_sort` for that\n\n"
    "See [the reference](https://example.com/sort) for more."_s;

struct Window {
  QuickQuestionView& view() { return *panel.panel().findChild<QuickQuestionView*>(); }
  QuestionField& field() { return *view().findChild<QuestionField*>(); }
  TranscriptView& transcript() { return *view().findChild<TranscriptView*>(); }
  QList<AnswerTextView*> texts(const QString& name) {
    QList<AnswerTextView*> found;
    for (auto* text : view().findChildren<AnswerTextView*>())
      if (text->accessibleName() == name && text->isVisible()) found.append(text);
    return found;
  }
  QAbstractButton* button(const QString& name) {
    for (auto* button : view().findChildren<QAbstractButton*>())
      if (button->isVisible() && (button->accessibleName() == name || button->text() == name)) return button;
    return nullptr;
  }
  void type(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(panel.panel().windowHandle(), key, modifiers);
  }
  void show() {
    world.controller.show();
    QApplication::setActiveWindow(&panel.panel());
  }
  PanelMenu& menu() { return *view().findChild<PanelMenu*>(); }
  QStringList menuEntries() {
    QStringList entries;
    for (const auto* entry : menu().findChildren<QAbstractButton*>())
      if (entry->isVisible()) entries.append(entry->text());
    return entries;
  }
  bool says(const QString& text) { return shownTexts(view()).contains(text); }

  QList<QUrl> opened;
  FakePanelWindow native;
  QuickQuestionWorld world{[this] { return borrowed(panel); }};
  QuickQuestionPanel panel{native, world.controller, [this](const QUrl& url) { opened.append(url); }};
};

}  // namespace

class TestQuickQuestionWindow : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { wearTheme(); }

  void aQuestionIsTypedAskedAndAnswered() {
    Window window;
    window.show();
    QCOMPARE(window.panel.panel().size(), QSize(676, 496));
    QCOMPARE(window.field().accessibleName(), u"Ask AI anything…"_s);
    QVERIFY(window.field().hasFocus() && window.says(u"Press ↩ to ask"_s));
    QTest::keyClicks(&window.field(), u"How do I sort"_s);
    const int oneLine = window.field().height();
    window.type(Qt::Key_Return, Qt::ShiftModifier);
    QTest::keyClicks(&window.field(), u"by name?"_s);
    QVERIFY(window.field().height() > oneLine);
    QCOMPARE(window.world.model().question(), u"How do I sort\nby name?"_s);
    window.type(Qt::Key_Return);
    QVERIFY(window.world.isWaiting());
    QCOMPARE(window.field().toPlainText(), QString());
    QVERIFY(window.says(u"Thinking…"_s));
    window.world.stream(AskWorld::delta(kAnswer) + AskWorld::done(kAnswer));
    QVERIFY(!window.says(u"Thinking…"_s));
    window.type(Qt::Key_Up);
    QCOMPARE(window.field().toPlainText(), u"How do I sort\nby name?"_s);
  }

  void codeIsCopiedByItsButton() {
    Window window;
    window.show();
    QVERIFY(window.world.converse(u"How?"_s, kAnswer + u"\n\n```\nsecond\n```"_s));
    auto* copy = window.button(u"Copy code block 1"_s);
    QVERIFY(copy && window.button(u"Copy code block 2"_s) && !window.button(u"Copy code block 3"_s));
    copy->click();
    QCOMPARE(window.world.pasteboard.texts.back(),
             u"struct Tool { QString name; int uses; };\n\nstd::ranges::sort(tools, {}, &Tool::name);"_s);
    QVERIFY(window.says(u"✓ Copied"_s));
    // What is marked goes before the latest answer.
    window.texts(u"Question"_s)[0]->selectAll();
    window.type(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(window.world.pasteboard.texts.back(), u"How?"_s);
    window.texts(u"Answer"_s)[0]->moveCursor(QTextCursor::Start);
    window.texts(u"Answer"_s)[0]->moveCursor(QTextCursor::EndOfWord, QTextCursor::KeepAnchor);
    window.type(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(window.world.pasteboard.texts.back(), u"Use"_s);
    window.texts(u"Answer"_s)[0]->moveCursor(QTextCursor::Start);
    window.type(Qt::Key_C, Qt::ControlModifier);
    QVERIFY(window.world.pasteboard.texts.back().startsWith(u"Use `std"));
  }

  void theTranscriptFollowsItsEndUnlessTheUserReadsAbove() {
    Window window;
    window.show();
    for (int i = 0; i < 3; ++i) QVERIFY(window.world.converse(u"Question %1"_s.arg(i), kAnswer));
    QScrollBar& bar = *window.transcript().verticalScrollBar();
    QTRY_VERIFY(bar.maximum() > 0 && bar.value() == bar.maximum());
    window.type(Qt::Key_PageUp);
    QVERIFY(bar.value() < bar.maximum());
    const int read = bar.value();
    window.world.ask(u"And now?"_s);
    QVERIFY(window.world.isWaiting());
    QTRY_COMPARE(bar.value(), bar.maximum());
    bar.setValue(read);
    window.world.http.deliver(AskWorld::delta(kAnswer));
    QTRY_COMPARE(window.texts(u"Answer"_s).size(), 4);
    QCOMPARE(bar.value(), read);
    window.world.http.answer(500, "oops");
    QVERIFY(window.says(u"Request failed (HTTP 500) oops"_s));
    QCOMPARE(window.field().toPlainText(), u"And now?"_s);
    window.type(Qt::Key_N, Qt::ControlModifier);
    QVERIFY(window.texts(u"Answer"_s).isEmpty() && window.says(u"Short answers, right here."_s));
  }

  void anAnswerThatComesAllAtOnceIsReadFromItsBeginning() {
    Window window;
    window.show();
    QScrollBar& bar = *window.transcript().verticalScrollBar();
    for (const int question : {0, 1}) {
      window.world.ask(u"Tell me more"_s);
      QVERIFY(window.world.isWaiting());
      window.world.http.answer(200, "Many words.\n\n" + QByteArray("More of them.\n\n").repeated(30));
      QTRY_COMPARE(window.texts(u"Question"_s).size(), question + 1);
      const AnswerTextView& shown = *window.texts(u"Question"_s).back();
      QTRY_VERIFY(bar.maximum() > 400 * (question + 1));
      QTRY_VERIFY(!shown.visibleRegion().isEmpty());
    }
    QVERIFY(bar.value() > 0 && bar.value() < bar.maximum());
  }

  void imagesComeByDropAndGoByKeyOrClick() {
    Window window;
    window.show();
    QMimeData data;
    data.setImageData(QImage::fromData(QuickQuestionWorld::png(400, 200)));
    QDragEnterEvent enter({200, 200}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&window.view(), &enter);
    QVERIFY(enter.isAccepted());
    // The press that began the drag was elsewhere.
    window.native.pointerPressed = true;
    window.native.loseKeyboard();
    QVERIFY(window.panel.panel().isVisible());
    QDropEvent drop({200, 200}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&window.view(), &drop);
    window.native.pointerPressed = false;
    QTRY_VERIFY(window.button(u"Remove attached image 1"_s));
    QVERIFY(window.says(u"Press ↩ to ask about your image"_s));
    QVERIFY(window.world.attach(6));
    QVERIFY(!window.button(u"Attach image files"_s)->isEnabled());
    QTRY_VERIFY(window.button(u"Remove attached image 6"_s));
    auto* second = window.button(u"Remove attached image 2"_s);
    second->setFocus();
    window.type(Qt::Key_Delete);
    QCOMPARE(window.world.model().attachments().size(), 5U);
    QTRY_VERIFY(window.button(u"Remove attached image 1"_s) && window.button(u"Remove attached image 5"_s));
    window.button(u"Remove attached image 1"_s)->click();
    QCOMPARE(window.world.model().attachments().size(), 4U);
    QVERIFY(window.panel.panel().isVisible());
    QMimeData text;
    text.setText(u"words"_s);
    QDragEnterEvent other({200, 200}, Qt::CopyAction, &text, Qt::LeftButton, {});
    other.ignore();
    QApplication::sendEvent(&window.view(), &other);
    QVERIFY(!other.isAccepted());
  }

  void theTranscriptShowsWhatWentAlong() {
    Window window;
    window.show();
    QVERIFY(window.world.converse(u"Hello?"_s, u"Hello."_s));
    QVERIFY(window.world.attach(2));
    QTRY_VERIFY(window.button(u"Remove attached image 2"_s));
    window.world.ask(u"Which is larger?"_s);
    const auto images = [&window] { return named<QWidget>(window.view(), u"2 images attached"_s); };
    QTRY_VERIFY(images());
    QVERIFY(window.world.isWaiting());
    window.world.http.deliver(AskWorld::delta(u"The"_s));
    window.world.http.answer(500, "oops");
    // They are in the strip again, and stay with what broke off.
    QVERIFY(images() && window.world.model().brokenOff()->thumbnails.size() == 2);
    window.world.controller.submit();
    QVERIFY(window.world.isWaiting());
    window.world.stream(AskWorld::done(u"The first."_s));
    QTRY_VERIFY(images());
    const QImage shown = images()->grab().toImage();
    QCOMPARE(shown.pixelColor(shown.width() / 4, shown.height() / 2), QColor(47, 111, 237));
    const auto& exchanges = window.world.model().exchanges();
    QVERIFY(exchanges[0].thumbnails.empty() && exchanges[1].thumbnails.size() == 2);
    QVERIFY(window.world.converse(u"And the smaller?"_s, u"The second."_s));
    QVERIFY(exchanges[2].thumbnails.empty());
    const auto history = AskExchange::history({exchanges[1]});
    QCOMPARE(history[0].toObject().keys(), QStringList({u"answer"_s, u"question"_s}));
  }

  void aClickElsewhereHidesItOnceTheButtonIsUp() {
    Window window;
    window.show();
    window.native.pointerPressed = true;
    window.native.loseKeyboard();
    QTest::qWait(100);
    QVERIFY(window.world.controller.isShown());
    window.native.pointerPressed = false;
    QTRY_VERIFY(!window.world.controller.isShown());
  }

  void theKeyboardReachesEverythingInReadingOrder() {
    Window window;
    window.show();
    QVERIFY(window.world.converse(u"How?"_s, kAnswer + u"\n\n- [more](https://example.com/more)"_s));
    QVERIFY(window.world.converse(u"And so?"_s, u"```\nso\n```"_s));
    QVERIFY(window.world.attach(2));
    const auto tabThrough = [&window](Qt::Key key) {
      QStringList names;
      do {
        window.type(key);
        const QWidget* focus = window.panel.panel().focusWidget();
        const auto* button = qobject_cast<const QAbstractButton*>(focus);
        names.append(button && focus->accessibleName().isEmpty() ? button->text() : focus->accessibleName());
      } while (names.back() != u"Ask AI anything…" && names.size() < 20);
      return names;
    };
    QStringList order = {u"Attach a region of the screen"_s,
                         u"Attach image files"_s,
                         u"Copy Answer"_s,
                         u"New"_s,
                         u"Copy code block 1"_s,
                         u"Link: the reference"_s,
                         u"Link: more"_s,
                         u"Copy code block 1"_s,
                         u"Remove attached image 1"_s,
                         u"Remove attached image 2"_s,
                         u"Ask AI anything…"_s};
    QCOMPARE(tabThrough(Qt::Key_Tab), order);
    std::reverse(order.begin(), order.end() - 1);
    QCOMPARE(tabThrough(Qt::Key_Backtab), order);
  }

  void aLinkIsSeenAndOpenedFromTheKeyboard() {
    Window window;
    window.show();
    QVERIFY(window.world.converse(
        u"Where?"_s, u"[Here](https://example.com/here), in detail:\n\n"_s + u"Many words.\n\n"_s.repeated(40)));
    QScrollBar& bar = *window.transcript().verticalScrollBar();
    QTRY_VERIFY(bar.maximum() > 0);
    bar.setValue(bar.maximum());
    auto* link = window.button(u"Link: Here"_s);
    QVERIFY(link && link->accessibleDescription() == u"https://example.com/here");
    link->setFocus();
    QVERIFY(!link->visibleRegion().isEmpty());
    window.type(Qt::Key_Return);
    QCOMPARE(window.opened, QList<QUrl>({QUrl(u"https://example.com/here"_s)}));
    // The browser is where the user goes on.
    QVERIFY(!window.world.controller.isShown());
    window.show();
    link->setFocus();
    window.type(Qt::Key_Space);
    QCOMPARE(window.opened.size(), 2);
  }

  void anAnswerHasAMenu() {
    Window window;
    window.show();
    window.type(Qt::Key_F10, Qt::ShiftModifier);
    QVERIFY(window.menu().isHidden());
    QVERIFY(window.world.converse(u"How?"_s, kAnswer));
    AnswerTextView& answer = *window.texts(u"Answer"_s)[0];
    QTextCursor middle = answer.document()->find(u"reference"_s);
    middle.setPosition(middle.anchor() + 4);
    const QPoint link = answer.cursorRect(middle).center();
    QContextMenuEvent wanted(QContextMenuEvent::Mouse, link, answer.viewport()->mapToGlobal(link));
    QApplication::sendEvent(answer.viewport(), &wanted);
    QCOMPARE(window.menuEntries(),
             QStringList({u"Copy Link Address"_s, u"Copy Answer as Markdown"_s, u"Select All"_s}));
    QVERIFY(window.view().rect().contains(window.menu().geometry()));
    window.type(Qt::Key_Return);
    QCOMPARE(window.world.pasteboard.texts.back(), u"https://example.com/sort"_s);

    // Of the newest answer, wherever the keyboard is, which gets it back.
    window.type(Qt::Key_F10, Qt::ShiftModifier);
    window.type(Qt::Key_Return);
    QCOMPARE(window.world.pasteboard.texts.back(), kAnswer);
    window.type(Qt::Key_F10, Qt::ShiftModifier);
    window.type(Qt::Key_Up);
    window.type(Qt::Key_Return);
    QVERIFY(window.field().hasFocus() && answer.selectedText().contains(u"stable_sort"));
    window.type(Qt::Key_F10, Qt::ShiftModifier);
    QCOMPARE(window.menuEntries(), QStringList({u"Copy Selection"_s, u"Copy Answer as Markdown"_s, u"Select All"_s}));
    window.type(Qt::Key_Escape);
    QVERIFY(window.menu().isHidden() && window.world.controller.isShown());
    // What is no key of the menu closes it and does what it does.
    window.type(Qt::Key_F10, Qt::ShiftModifier);
    window.type(Qt::Key_A);
    QVERIFY(window.menu().isHidden());
    QCOMPARE(window.field().toPlainText(), u"a"_s);
    window.type(Qt::Key_F10, Qt::ShiftModifier);
    window.world.controller.hide();
    window.show();
    QVERIFY(window.menu().isHidden());
    window.type(Qt::Key_F10, Qt::ShiftModifier);
    window.world.controller.startOver();
    QCOMPARE(window.menuEntries().size(), 3);
    window.type(Qt::Key_Down);
    window.type(Qt::Key_Return);
  }

  void aPasteStandsWhereItWasPasted() {
    Window window;
    window.show();
    QTest::keyClicks(&window.field(), u"What is ?"_s);
    window.type(Qt::Key_Left);
    Q_EMIT window.world.controller.pasting();
    // The clipboard's owner takes its time.
    window.type(Qt::Key_End);
    QTest::keyClicks(&window.field(), u" Shortly."_s);
    Q_EMIT window.world.controller.textPasted(u"a monad"_s);
    QCOMPARE(window.field().toPlainText(), u"What is a monad? Shortly."_s);
  }

  void typingDoesNotLayTheGrowingAnswerOutAgain() {
    Window window;
    window.show();
    window.world.ask(u"How?"_s);
    QVERIFY(window.world.isWaiting());
    window.world.http.deliver(AskWorld::delta(kAnswer));
    QTRY_COMPARE(window.texts(u"Answer"_s).size(), 1);
    QSignalSpy layouts(window.texts(u"Answer"_s)[0]->document(), &QTextDocument::contentsChanged);
    QTest::keyClicks(&window.field(), u"And so on"_s);
    QCOMPARE(window.world.model().question(), u"And so on"_s);
    QVERIFY(layouts.isEmpty());
  }

  void thePageTestsTheConnection() {
    Window window;
    QuickQuestionSettingsView page(window.world.client, window.world.system);
    page.resize(520, 420);
    page.show();
    auto* check = page.findChild<CheckControl*>();
    check->click();
    QVERIFY(window.world.isWaiting());
    QCOMPARE(QJsonDocument::fromJson(window.world.request().body).object(),
             (QJsonObject{{u"question"_s, u"Reply with the single word: pong"_s}}));
    window.world.http.answer(200, "pong");
    QTRY_VERIFY(!check->isTesting());
    QVERIFY(shownTexts(page).contains(u"✓ pong"_s));
  }
};

QTEST_MAIN(TestQuickQuestionWindow)
#include "test_quick_question_window.moc"
