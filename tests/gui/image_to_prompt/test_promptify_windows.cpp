#include <QAccessible>
#include <QComboBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include "core/ui/choice_picker_window.h"
#include "core/ui/panel_menu.h"
#include "core/ui/settings_form.h"
#include "support/controls.h"
#include "support/fake_panel_window.h"
#include "support/prompt_world.h"
#include "support/wear_theme.h"
#include "tools/image_to_prompt/prompt_text.h"
#include "tools/image_to_prompt/promptify_result_panel.h"
#include "tools/image_to_prompt/promptify_settings_view.h"

using namespace Qt::StringLiterals;

namespace {

const QString kSentence =
    u"A quiet settings window in a light appearance: a sidebar with six entries at the left, the first of them "
    "selected in blue; a column of rounded sections at the right. "_s;

QImage picture() {
  QImage image(320, 200, QImage::Format_RGB32);
  image.fill(Qt::darkCyan);
  return image;
}

/// The card over fakes, measured as in the program.
struct Card : PromptWorld {
  PalettePanel& show(const QString& prompt, const QImage& image = {}, const QString& style = {}) {
    card.show(prompt, image, style);
    panel->activateWindow();
    if (!QTest::qWaitForWindowActive(panel)) qFatal("the card is not active");
    return *panel;
  }
  void press(Qt::Key key, Qt::KeyboardModifiers held = {}) { QTest::keyClick(panel->windowHandle(), key, held); }
  PromptText& text() { return *panel->findChild<PromptText*>(); }

  FakePanelWindow native;
  PalettePanel* panel = nullptr;
  PromptifyResultController card{{pasteboard, clock, &PromptText::heightOf, [this] {
                                    auto made = std::make_unique<PromptifyResultPanel>(native, card);
                                    panel = &made->panel();
                                    return made;
                                  }}};
};

}  // namespace

class TestPromptifyWindows : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { wearTheme(); }

  void theCardGrowsWithItsPromptAndScrollsALongOne() {
    Card card;
    PalettePanel& small = card.show(u"A red square."_s, picture(), u"UI Focused"_s);
    QCOMPARE(small.size(), QSize(616, 72 + 102 + 40 + 96));
    QVERIFY(shownTexts(small).contains(u"UI Focused · copied to your clipboard"_s));
    QCOMPARE(unnamedControls(small), QStringList());
    QVERIFY(!card.text().verticalScrollBar()->isVisible());
    QCOMPARE(card.text().height(), 72);

    PalettePanel& medium = card.show(kSentence.repeated(4), picture(), u"Image Focused"_s);
    QVERIFY(medium.height() > 320 && medium.height() < 618);
    QVERIFY(!card.text().verticalScrollBar()->isVisible());

    PalettePanel& large = card.show(kSentence.repeated(40));
    QCOMPARE(large.height(), 380 + 102 + 40 + 96);
    QVERIFY(shownTexts(large).contains(u"Copied to your clipboard"_s));
    QCOMPARE(card.text().verticalScrollBar()->value(), 0);
    card.press(Qt::Key_PageDown);
    QVERIFY(card.text().verticalScrollBar()->value() > 0);
  }

  void theButtonSaysThatItHasCopied() {
    Card card;
    PalettePanel& panel = card.show(u"A red square."_s, picture(), u"General Purpose"_s);
    const auto button = [&panel](const QString& text) {
      for (auto* each : panel.findChildren<QPushButton*>())
        if (each->text() == text) return each;
      return static_cast<QPushButton*>(nullptr);
    };
    QVERIFY(button(u"Copied!"_s));
    card.clock.advance(std::chrono::milliseconds(1500));
    QVERIFY(button(u"Copy Prompt"_s));
    // The whole prompt, whatever is selected.
    card.press(Qt::Key_A, Qt::ControlModifier);
    card.press(Qt::Key_C, Qt::ControlModifier);
    QTest::mouseClick(button(u"Copied!"_s), Qt::LeftButton);
    QCOMPARE(card.pasteboard.texts, QStringList(3, u"A red square."_s));
    card.native.loseKeyboard();
    QVERIFY(panel.isVisible());
    QVERIFY(shownTexts(panel).contains(u"close, after a click on this card"_s));
    auto* close = named<QPushButton>(panel, u"Close"_s);
    QCOMPARE(close->toolTip(), u"Close (esc)"_s);
    QTest::mouseClick(close, Qt::LeftButton);
    QVERIFY(!panel.isVisible());
    card.show(u"Another"_s);
    card.press(Qt::Key_Escape);
    QVERIFY(!card.panel->isVisible());
  }

  void theMenuOfThePromptCopiesAPartOfIt() {
    Card card;
    PalettePanel& panel = card.show(u"A red square."_s);
    card.press(Qt::Key_F10, Qt::ShiftModifier);
    auto* menu = named<PanelMenu>(panel, u"Menu of the prompt"_s);
    QVERIFY(menu && buttonWith(*menu, u"Copy Prompt"_s) && !buttonWith(*menu, u"Copy Selection"_s));
    card.press(Qt::Key_Escape);
    QVERIFY(menu->isHidden() && panel.isVisible());
    QTextCursor square = card.text().document()->find(u"square"_s);
    card.text().setTextCursor(square);
    card.press(Qt::Key_F10, Qt::ShiftModifier);
    QTest::mouseClick(buttonWith(*menu, u"Copy Selection"_s), Qt::LeftButton);
    QCOMPARE(card.pasteboard.texts.back(), u"square"_s);
    QVERIFY(menu->isHidden() && card.text().hasFocus());
  }

  void thePageSetsSourceAndStyleAndTestsTheConnection() {
    PromptWorld at;
    SettingsPage page;
    page.resize(560, 720);
    page.addWidget(new PromptifySettingsView({at.settings, at.client, at.permissions, at.system}));
    page.show();
    QCOMPARE(unnamedControls(page), QStringList());
    auto* source = named<QComboBox>(page, u"When I press the shortcut"_s);
    auto* style = named<QComboBox>(page, u"Style"_s);
    const QString ask =
        u"A quick-pick appears in the center of the screen each time so you can choose the style for that image."_s;
    QVERIFY(!shownTexts(page).contains(ask));
    source->setFocus();
    QTest::keyClick(source, Qt::Key_Down);
    QTest::keyClick(style, Qt::Key_Down);
    QTest::keyClick(style, Qt::Key_Down);
    QVERIFY(at.settings.value() == PromptifySettings(PromptStyleSetting::ask, ImageSource::liveSelection));
    QVERIFY(shownTexts(page).contains(ask));
    QVERIFY(
        shownTexts(page).contains(u"Drag a region on screen; it's captured and turned into a prompt. Requires Screen "
                                  "Recording permission."_s));
    auto* test = named<QPushButton>(page, u"Image to Prompt: "_s);
    test->click();
    QTRY_COMPARE(at.http.sent.size(), 1U);
    QVERIFY(at.http.sent.front().body.contains("filename=\"promptify-test.png\"\r\nContent-Type: image/png\r\n"));
    QVERIFY(at.http.answer(200, "a dot"));
    QVERIFY(shownTexts(page).contains(u"✓ Connected"_s));
    test->click();
    QTRY_COMPARE(at.http.sent.size(), 2U);
    QVERIFY(at.http.answer(502, "no provider"));
    QVERIFY(shownTexts(page).contains(u"Processing failed (HTTP 502) no provider"_s));
    QVERIFY(at.pasteboard.texts.isEmpty() && at.toasts.shown.empty());
  }
};

QTEST_MAIN(TestPromptifyWindows)
#include "test_promptify_windows.moc"
