#include <QComboBox>
#include <QDropEvent>
#include <QMimeData>
#include <QPushButton>
#include <QSettings>
#include <QTest>

#include "core/ui/footer_hints.h"
#include "core/ui/settings_form.h"
#include "support/controls.h"
#include "support/fake_panel_window.h"
#include "support/files.h"
#include "support/generate_image_world.h"
#include "support/wear_theme.h"
#include "tools/generate_image/generate_image_panel.h"
#include "tools/generate_image/generate_image_settings_view.h"
#include "tools/generate_image/generate_image_view.h"
#include "tools/generate_image/picture_view.h"
#include "tools/generate_image/prompt_editor.h"

using namespace Qt::StringLiterals;

namespace {

struct Window : GenerateImageWorld {
  Window() { controller.show(); }

  GenerateImageView& view() { return *panel.panel().findChild<GenerateImageView*>(); }
  PromptEditor& editor() { return *view().findChild<PromptEditor*>(); }
  FooterHints& footer() { return *view().findChild<FooterHints*>(); }
  QPushButton* button(const QString& text) { return buttonWith(view(), text); }
  void press(Qt::Key key, Qt::KeyboardModifiers held = {}) { QTest::keyClick(panel.panel().windowHandle(), key, held); }
  void type(const QString& text) {
    for (const QChar character : text) QTest::sendKeyEvent(QTest::Click, &editor(), Qt::Key_unknown, character, {});
  }
  void generate(const QString& prompt) {
    controller.model().setPrompt(prompt);
    press(Qt::Key_Return, Qt::ControlModifier);
    if (!QTest::qWaitFor([this] { return !http.waiting.empty(); })) qFatal("nothing was sent");
  }
  void make(const QString& prompt, const QByteArray& png) {
    generate(prompt);
    http.answer(200, imageAnswer(png));
    if (!QTest::qWaitFor([this] { return !controller.model().isGenerating(); })) qFatal("still generating");
  }
  bool drop(QMimeData& data) {
    QDragEnterEvent enter({200, 200}, Qt::CopyAction, &data, Qt::LeftButton, {});
    enter.ignore();
    QApplication::sendEvent(&view(), &enter);
    if (!enter.isAccepted()) return false;
    QDropEvent release({200, 200}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&view(), &release);
    return release.isAccepted();
  }

  QSettings defaults{directory.filePath(u"defaults.ini"_s), QSettings::IniFormat};
  FakePanelWindow native;
  GenerateImagePanelController controller{controllerServices(), [this] { return borrowed(panel); }};
  GenerateImagePanel panel{native, defaults, controller};
};

}  // namespace

class TestGenerateImageWindow : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { wearTheme(); }

  void theKeyboardWritesThePromptAndRunsThePanel() {
    Window window;
    QCOMPARE(window.panel.panel().focusWidget(), &window.editor());
    window.type(u"fox"_s);
    QCOMPARE(window.controller.model().prompt(), u"fox"_s);
    window.press(Qt::Key_1, Qt::ControlModifier);
    QCOMPARE(window.settings.value().options.size, ImageSize::square);
    QVERIFY(window.button(u"Square"_s)->isChecked());
    QTest::mouseClick(window.button(u"High"_s), Qt::LeftButton);
    QCOMPARE(window.settings.value().options.quality, ImageQuality::high);
    window.make(u"fox"_s, pngPicture({64, 64}));
    window.editor().selectAll();
    window.press(Qt::Key_C, Qt::ControlModifier);
    QVERIFY(window.pasteboard.images.empty());
    window.editor().moveCursor(QTextCursor::End);
    window.press(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(window.pasteboard.images, std::vector{pngPicture({64, 64})});
    QCOMPARE(window.footer().accessibleName(), u"Image copied to clipboard"_s);
    window.pasteboard.writeText(u" and hen"_s);
    window.press(Qt::Key_V, Qt::ControlModifier);
    QTRY_COMPARE(window.controller.model().prompt(), u"fox and hen"_s);
    window.press(Qt::Key_N, Qt::ControlModifier);
    QCOMPARE(window.editor().toPlainText(), QString());
    window.press(Qt::Key_Escape);
    QVERIFY(!window.panel.panel().isVisible());
  }

  void imagesAreDroppedAndTakenAway() {
    Window window;
    QMimeData files;
    const QString path = window.directory.filePath(u"a.png"_s);
    QVERIFY(writeFile(path, pngPicture()));
    files.setUrls({QUrl::fromLocalFile(path), QUrl(u"https://example.com/b.png"_s)});
    QVERIFY(window.drop(files));
    QMimeData pixels;
    pixels.setImageData(QImage::fromData(pngPicture()));
    QVERIFY(window.drop(pixels));
    QTRY_COMPARE(window.controller.model().references().size(), 2U);
    QMimeData text;
    text.setText(u"words"_s);
    QVERIFY(!window.drop(text));
    const auto chip = [&] { return named<QPushButton>(window.view(), u"Reference 1: click to remove it"_s); };
    QTRY_VERIFY(chip());
    QTest::mouseClick(chip(), Qt::LeftButton);
    QCOMPARE(window.controller.model().references().size(), 1U);
    window.make(u"fox"_s, pngPicture({64, 64}));
    window.press(Qt::Key_E, Qt::ControlModifier);
    QTRY_VERIFY(window.button(u"Change the Image"_s));
    QTRY_VERIFY(named<QPushButton>(window.view(), u"The image to be changed"_s));
    QCOMPARE(window.editor().placeholderText(), u"What should change?"_s);
  }

  void itStaysUpAndStandsWhereItWasPut() {
    Window window;
    window.native.loseKeyboard();
    QVERIFY(window.panel.panel().isVisible());
    QCOMPARE(window.footer().accessibleName(), u"Click this window to use its keys"_s);
    Q_EMIT window.panel.panel().moved({120, 64});
    window.controller.toggle();
    window.controller.toggle();
    QCOMPARE(window.panel.panel().pos(), QPoint(120, 64));
  }

  void theSettingsPageTellsAndTestsAndKeeps() {
    Window window;
    window.make(u"fox"_s, pngPicture());
    SettingsPage page;
    page.resize(560, 620);
    auto* removal = new QPushButton(u"Delete All…"_s);
    page.addWidget(
        new GenerateImageSettingsView({window.client, window.settings, window.history, window.system}, removal));
    page.show();
    const auto says = [&page](const QString& text) { return isShown(page, text); };
    QCOMPARE(unnamedControls(page), QStringList());
    QVERIFY(says(u"which costs what such an image costs"_s) && says(u"1 image, "_s));
    QVERIFY(window.http.waiting.empty());
    auto* test = named<QPushButton>(page, u"Generate Image: "_s);
    test->click();
    QTRY_VERIFY(!window.http.waiting.empty());
    QVERIFY(window.http.sent.back().body.contains("name=\"quality\"\r\n\r\nlow\r\n"));
    window.http.answer(200, imageAnswer(pngPicture({64, 64})));
    QTRY_VERIFY(says(u"✓ An image of 64 × 64 pixels"_s));
    QCOMPARE(window.history.entries().size(), 1U);
    auto* room = page.findChild<QComboBox*>();
    room->setCurrentIndex(0);
    Q_EMIT room->activated(0);
    QCOMPARE(window.settings.value().historyMegabytes, 100);
    window.history.removeAll();
    QVERIFY(says(u"None."_s) && !removal->isEnabled());
  }
};

QTEST_MAIN(TestGenerateImageWindow)
#include "test_generate_image_window.moc"
