#include <QComboBox>
#include <QPushButton>
#include <QTest>

#include "core/ui/settings_form.h"
#include "support/controls.h"
#include "support/uplink_world.h"
#include "support/wear_theme.h"
#include "tools/image_to_url/uplink_settings_view.h"

using namespace Qt::StringLiterals;

namespace {

const QByteArray kLinkAnswer = R"({"url": "http://127.0.0.1:40401/l/3Jq0mZxkN8WcR5tYbV2LhQeA"})";

struct Stage : UplinkWorld {
  explicit Stage(Permissions* chosen = nullptr) {
    page.resize(560, 520);
    page.addWidget(new UplinkSettingsView({settings, uploader, chosen ? *chosen : permissions, system}));
    page.show();
    page.activateWindow();
    if (!QTest::qWaitForWindowActive(&page)) qFatal("the page is not active");
  }
  QStringList texts() const { return shownTexts(page); }
  QComboBox& source() { return *page.findChild<QComboBox*>(); }
  void press() { QTest::mouseClick(named<QPushButton>(page, u"Image to URL: "_s), Qt::LeftButton); }

  SettingsPage page;
};

}  // namespace

class TestUplinkSettingsView : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { wearTheme(); }

  void theSourceIsChosenWithTheKeyboard() {
    const QString drag = u"Drag a region on screen; it's captured and uploaded."_s;
    Stage stage;
    stage.source().setFocus();
    QTest::keyClick(&stage.source(), Qt::Key_Down);
    QCOMPARE(stage.settings.value().source, ImageSource::liveSelection);
    QVERIFY(stage.texts().contains(drag + u" Requires Screen Recording permission (Settings → Privacy)."_s));
    stage.settings.update([](UplinkSettings& settings) { settings.source = ImageSource::clipboard; });
    QCOMPARE(stage.source().currentText(), u"Clipboard"_s);
    FakePagelessPermissions pageless;
    Stage other(&pageless);
    other.settings.update([](UplinkSettings& settings) { settings.source = ImageSource::liveSelection; });
    QVERIFY(other.texts().contains(drag));
  }

  void theConnectionIsTested() {
    Stage stage;
    stage.press();
    QTRY_COMPARE(stage.http.sent.size(), 1U);
    QVERIFY(stage.http.sent.front().body.contains("filename=\"uplink-test.png\"\r\nContent-Type: image/png\r\n"));
    QVERIFY(stage.texts().contains(u"Testing…"_s));
    QVERIFY(stage.http.answer(200, kLinkAnswer));
    QVERIFY(stage.texts().contains(u"✓ http://127.0.0.1:40401/l/3Jq0mZxkN8WcR5tYbV2LhQeA"_s));
    stage.press();
    QTRY_COMPARE(stage.http.sent.size(), 2U);
    QVERIFY(stage.http.answer(413, "too\nlarge"));
    QVERIFY(stage.texts().contains(u"Upload failed (HTTP 413) too\\nlarge"_s));
    QVERIFY(stage.pasteboard.texts.isEmpty());
    QVERIFY(stage.toasts.shown.empty());
  }
};

QTEST_MAIN(TestUplinkSettingsView)
#include "test_uplink_settings_view.moc"
