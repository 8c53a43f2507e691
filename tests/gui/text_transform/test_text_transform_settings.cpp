#include <QComboBox>
#include <QPushButton>
#include <QTest>

#include "core/ui/settings_form.h"
#include "support/clipping.h"
#include "support/controls.h"
#include "support/transform_world.h"
#include "support/uplink_world.h"
#include "support/wear_theme.h"
#include "tools/text_transform/ai_text_transform_settings_view.h"

using namespace Qt::StringLiterals;

namespace {

struct Stage : TransformWorld {
  explicit Stage(Permissions* chosen = nullptr) {
    page.resize(560, 620);
    page.addWidget(new AITextTransformSettingsView({settings, transforms, chosen ? *chosen : permissions, system}));
    page.show();
    page.activateWindow();
    if (!QTest::qWaitForWindowActive(&page)) qFatal("the page is not active");
  }
  bool says(const QString& text) const { return shownTexts(page).contains(text); }
  void press() { QTest::mouseClick(named<QPushButton>(page, u"AI Text Transform: "_s), Qt::LeftButton); }

  SettingsPage page;
};

}  // namespace

class TestTextTransformSettings : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { wearTheme(); }

  void whereTheResultGoesIsChosenWithTheKeyboard() {
    const QString note =
        u"The rewrite types over your selection. Works in most editors and terminals; a few apps drop the selection "
        u"when another window takes focus."_s;
    Stage stage;
    auto* output = stage.page.findChild<QComboBox*>();
    QCOMPARE(output->currentText(), u"Copy result to clipboard"_s);
    QVERIFY(!stage.says(note));
    output->setFocus();
    QTest::keyClick(output, Qt::Key_Up);
    QCOMPARE(output->currentText(), u"Replace the selection"_s);
    QCOMPARE(stage.settings.value().output, TransformOutput::replace);
    QVERIFY(stage.says(note));
    QCOMPARE(clippedTexts(stage.page), QStringList());
    stage.settings.update([](AITextTransformSettings& values) { values.output = TransformOutput::clipboard; });
    QCOMPARE(output->currentText(), u"Copy result to clipboard"_s);
  }

  void theConnectionIsTested() {
    Stage stage;
    stage.press();
    QTRY_COMPARE(stage.http.sent.size(), 1U);
    QCOMPARE(stage.http.sent.front().body, "{\"action\":\"fix-grammar\",\"text\":\"i has three cat\"}");
    QVERIFY(stage.says(u"Testing…"_s));
    QVERIFY(stage.http.answer(200, "{\"text\": \"" + QByteArray(100, 'x') + "\"}"));
    QVERIFY(stage.says(u"✓ "_s + QString(80, u'x') + u'…'));
    stage.press();
    QTRY_COMPARE(stage.http.sent.size(), 2U);
    QVERIFY(stage.http.answer(413, "too\nlarge"));
    QVERIFY(stage.says(u"Request failed (HTTP 413) too\\nlarge"_s));
    QVERIFY(stage.toasts.shown.empty());
    QVERIFY(stage.pasteboard.texts.isEmpty());
  }
};

QTEST_MAIN(TestTextTransformSettings)
#include "test_text_transform_settings.moc"
