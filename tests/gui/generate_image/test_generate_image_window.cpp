#include <QComboBox>
#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QPainter>
#include <QPushButton>
#include <QSettings>
#include <QTest>

#include "core/ui/footer_hints.h"
#include "core/ui/palette_list.h"
#include "core/ui/settings_form.h"
#include "support/controls.h"
#include "support/fake_panel_window.h"
#include "support/files.h"
#include "support/generate_image_world.h"
#include "support/pictures.h"
#include "tools/generate_image/generate_image_panel.h"
#include "tools/generate_image/generate_image_settings_view.h"
#include "tools/generate_image/generate_image_view.h"
#include "tools/generate_image/picture_view.h"
#include "tools/generate_image/prompt_editor.h"

using namespace Qt::StringLiterals;

namespace {

/// A hill under a sun, as PNG.
QByteArray landscape(const QColor& sky, QSize size = {1536, 1024}) {
  QImage picture(size, QImage::Format_RGB32);
  picture.fill(sky);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0xFFD166));
  painter.drawEllipse(QPointF(size.width() * 0.7, size.height() * 0.3), 120, 120);
  painter.setBrush(QColor(0x2A6F4E));
  painter.drawEllipse(QPointF(size.width() * 0.4, size.height() * 1.1), size.width() * 0.6, size.height() * 0.5);
  painter.end();
  QByteArray bytes;
  QBuffer file(&bytes);
  if (!file.open(QIODevice::WriteOnly) || !picture.save(&file, "png")) qFatal("no picture");
  return bytes;
}

struct Window : GenerateImageWorld {
  Window() { controller.show(); }

  GenerateImageView& view() { return *panel.panel().findChild<GenerateImageView*>(); }
  PromptEditor& editor() { return *view().findChild<PromptEditor*>(); }
  PaletteList& strip() { return *view().findChild<PaletteList*>(); }
  FooterHints& footer() { return *view().findChild<FooterHints*>(); }
  QPushButton* button(const QString& text) {
    for (auto* button : view().findChildren<QPushButton*>())
      if (button->isVisible() && button->text() == text) return button;
    return nullptr;
  }
  bool says(const QString& text) {
    const auto labels = view().findChildren<QLabel*>();
    return std::ranges::any_of(labels,
                               [&](const QLabel* label) { return label->isVisible() && label->text().contains(text); });
  }
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
  GenerateImagePanelController controller{controllerServices(), [this] { return std::make_unique<Borrowed>(panel); }};
  GenerateImagePanel panel{native, defaults, controller};

 private:
  /// The controller owns its panel; this one is the test's.
  struct Borrowed final : PalettePresenter {
    explicit Borrowed(GenerateImagePanel& target) : panel(target) {}
    void present() override { panel.present(); }
    void warmUp() override { panel.warmUp(); }
    void dismiss() override { panel.dismiss(); }
    GenerateImagePanel& panel;
  };
};

}  // namespace

class TestGenerateImageWindow : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { wearTheme(); }

  void everyStateHasItsLook() {
    Window window;
    QCOMPARE(unnamedControls(window.panel.panel()), QStringList());
    QVERIFY(window.says(u"Your image appears here"_s) && !window.button(u"Copy"_s));
    shoot(window.panel.panel(), u"generate-empty"_s);

    for (const QColor& color : {QColor(0x7B2CBF), QColor(0xE07A5F), QColor(0x3D5A80)})
      window.controller.attachImage(landscape(color, {300, 200}));
    QTRY_COMPARE(window.controller.model().references().size(), 3U);
    window.controller.model().setPrompt(u"A hill in the evening, flat colours, in the manner of these three"_s);
    shoot(window.panel.panel(), u"generate-references"_s);
    window.press(Qt::Key_Tab);
    window.press(Qt::Key_Right);
    QVERIFY(window.footer().accessibleName().contains(u"take it away"_s));
    shoot(window.panel.panel(), u"generate-reference-selected"_s);
    window.press(Qt::Key_Escape);

    window.press(Qt::Key_Return, Qt::ControlModifier);
    QVERIFY(window.says(u"Generating… 0 s"_s) && window.button(u"Cancel"_s));
    shoot(window.panel.panel(), u"generate-generating"_s);
    QTRY_VERIFY(!window.http.waiting.empty());
    window.http.answer(200, imageAnswer(landscape(0x89C2D9)));
    QTRY_VERIFY(window.button(u"Copy"_s) && window.button(u"Save…"_s) && window.button(u"Regenerate"_s));
    QVERIFY(window.says(u"1 image"_s));
    shoot(window.panel.panel(), u"generate-result"_s);

    window.generate(u"Another one"_s);
    window.http.answer(500, "The provider is overloaded, please try again in a moment " + QByteArray(60, 'x'));
    QVERIFY(window.says(u"Generation failed (HTTP 500) The provider"_s));
    shoot(window.panel.panel(), u"generate-error"_s);
    window.controller.startNew();
    window.generate(u"Another one"_s);
    window.http.answer(500, "oops");
    QVERIFY(window.says(u"No image"_s));
    shoot(window.panel.panel(), u"generate-error-alone"_s);
  }

  void theHistoryIsShownAndDeletedFrom() {
    Window window;
    int hue = 0;
    for (const QString& prompt : {u"dawn"_s, u"noon"_s, u"dusk"_s, u"night"_s})
      window.make(prompt, landscape(QColor::fromHsv(hue += 70, 120, 220), {1024, 1024}));
    window.press(Qt::Key_Tab);
    window.press(Qt::Key_Right);
    QTRY_COMPARE(window.controller.model().shown()->request.prompt, u"dusk"_s);
    QCOMPARE(window.strip().currentIndex().row(), 1);
    QVERIFY(window.says(u"dusk"_s));
    QVERIFY(window.footer().accessibleName().contains(u"use its prompt"_s));
    shoot(window.panel.panel(), u"generate-history"_s);
    window.press(Qt::Key_Delete);
    QVERIFY(window.footer().accessibleName().contains(u"Press ⌫ again"_s));
    shoot(window.panel.panel(), u"generate-delete"_s);
    window.press(Qt::Key_Delete);
    QCOMPARE(window.history.entries().size(), 3U);
    QTest::mouseClick(window.strip().viewport(), Qt::LeftButton, {}, {2 * 68 + 30, 30});
    QTRY_COMPARE(window.controller.model().shown()->request.prompt, u"dawn"_s);
  }

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
    shoot(window.panel.panel(), u"generate-edit"_s);
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
    window.make(u"fox"_s, landscape(0x89C2D9));
    SettingsPage page;
    page.resize(560, 620);
    auto* removal = new QPushButton(u"Delete All…"_s);
    page.addWidget(
        new GenerateImageSettingsView({window.client, window.settings, window.history, window.system}, removal));
    page.show();
    const auto says = [&page](const QString& text) {
      const auto labels = page.findChildren<QLabel*>();
      return std::ranges::any_of(labels, [&](const QLabel* label) { return label->text().contains(text); });
    };
    QCOMPARE(unnamedControls(page), QStringList());
    QVERIFY(says(u"which costs what such an image costs"_s) && says(u"1 image, "_s));
    QVERIFY(window.http.waiting.empty());
    auto* test = named<QPushButton>(page, u"Generate Image: "_s);
    test->click();
    QTRY_VERIFY(!window.http.waiting.empty());
    QVERIFY(window.http.sent.back().body.contains("name=\"quality\"\r\n\r\nlow\r\n"));
    window.http.answer(200, imageAnswer(pngPicture({64, 64})));
    QTRY_VERIFY(says(u"✓ An image of 64 × 64 pixels"_s));
    shoot(page, u"generate-settings"_s);
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
