#include <QDropEvent>
#include <QMimeData>
#include <QPushButton>
#include <QSettings>
#include <QTest>

#include <ctime>

#include "core/ui/footer_hints.h"
#include "core/ui/palette_list.h"
#include "support/controls.h"
#include "support/fake_panel_window.h"
#include "support/fake_platform.h"
#include "support/fake_presenters.h"
#include "support/upload_world.h"
#include "support/wear_theme.h"
#include "tools/file_drop/bulk_upload_panel.h"
#include "tools/file_drop/bulk_upload_panel_controller.h"
#include "tools/file_drop/bulk_upload_view.h"
#include "tools/file_drop/file_drop_settings_view.h"

using namespace Qt::StringLiterals;

using Phase = BulkUploadModel::Phase;

namespace {

struct Window {
  Window() { world.services.useOwnHosts(); }

  BulkUploadView& view() { return *panel.panel().findChild<BulkUploadView*>(); }
  FooterHints& footer() { return *view().findChild<FooterHints*>(); }
  QPushButton* button(const QString& text) { return buttonWith(view(), text); }
  /// Whether the window takes it.
  bool drop(const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter({200, 200}, Qt::MoveAction | Qt::CopyAction, &data, Qt::LeftButton, {});
    enter.ignore();
    QApplication::sendEvent(&view(), &enter);
    if (!enter.isAccepted()) return false;
    QDropEvent release({200, 200}, Qt::MoveAction | Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&view(), &release);
    return release.isAccepted() && release.dropAction() == Qt::CopyAction;
  }
  QUrl file(const QString& name, qint64 size = 1) { return QUrl::fromLocalFile(world.sparse(name, size)); }

  UploadWorld world;
  FakePasteboard pasteboard;
  FakeToasts toasts;
  FakeLauncherOpener launcher;
  AppPreferences preferences{world.services.folders.file(u"app-settings.json"_s)};
  QSettings defaults{world.path(u"defaults.ini"_s), QSettings::IniFormat};
  FakePanelWindow native;
  BulkUploadPanelController controller{
      {world.client, pasteboard, toasts, preferences, launcher, [](const auto&, const auto&) {}},
      [this] { return borrowed(panel); }};
  BulkUploadPanel panel{native, defaults, controller};
};

}  // namespace

class TestBulkUploadWindow : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { wearTheme(); }

  void everyPhaseHasItsPage() {
    Window window;
    window.controller.show();
    QVERIFY(window.button(u"Choose Files…"_s) && window.button(u"Choose Folder…"_s));
    QVERIFY(!window.button(u"Upload"_s));

    QVERIFY(
        window.drop({window.file(u"notes.txt"_s, 12'345),
                     window.file(u"a very long name of a file that does not fit into its row and is cut short.tar.gz"_s,
                                 42'000'000),
                     QUrl::fromLocalFile(window.world.temporary())}));
    QTRY_VERIFY(window.button(u"Upload"_s) && window.button(u"Upload"_s)->isEnabled());
    QVERIFY(window.world.services.http.sent.empty());
    window.controller.model().moveSelection(1);

    window.controller.model().showZipping(0.42);
    QVERIFY(!window.drop({window.file(u"late.txt"_s)}));
    window.controller.model().backToList();

    window.button(u"Upload"_s)->click();
    QTRY_VERIFY(!window.world.services.http.waiting.empty());
    window.world.services.http.sent[0].progress(0.73);
    QVERIFY(window.button(u"Cancel"_s));
    window.world.services.http.answer(507,
                                      "There is no room left on the disk of this service for " + QByteArray(60, 'x'));
    QVERIFY(window.button(u"Try Again"_s) && window.button(u"Start Over"_s));

    window.button(u"Try Again"_s)->click();
    QTRY_VERIFY(!window.world.services.http.waiting.empty());
    window.world.services.http.answer(200, "https://links.example/l/JjYRoPO0SEa0eL4RRDPGUXHx");
    QVERIFY(window.controller.model().phase() == Phase::done);
    window.button(u"Start Over"_s)->click();
    QVERIFY(window.button(u"Choose Files…"_s));
  }

  void itStaysUpAndTakesTheKeyboardBackAtADropOrAClick() {
    Window window;
    window.controller.show();
    PalettePanel& panel = window.panel.panel();
    const auto hasKeyboard = [&] { return window.native.keyboardOwner == panel.windowHandle(); };
    QVERIFY(hasKeyboard());
    window.native.loseKeyboard();
    QVERIFY(panel.isVisible() && !hasKeyboard());
    QCOMPARE(window.footer().accessibleName(), u"Click this window to use its keys"_s);
    QVERIFY(window.drop({window.file(u"a"_s)}));
    QVERIFY(hasKeyboard() && window.native.isWatched());
    window.native.loseKeyboard();
    QTest::mouseClick(panel.windowHandle(), Qt::LeftButton, {}, {240, 70});
    QVERIFY(hasKeyboard());
    QVERIFY(window.footer().accessibleName().contains(u"upload"_s));
  }

  void onlyFilesOfThisComputerAreTaken() {
    Window window;
    window.controller.show();
    QVERIFY(!window.drop({QUrl(u"https://example.com/a.png"_s)}));
    QVERIFY(window.drop({QUrl(u"https://example.com/a.png"_s), window.file(u"a"_s)}));
    QCOMPARE(window.controller.model().rowCount(), 1);
  }

  void itStandsWhereItWasPut() {
    Window window;
    window.controller.show();
    const QPoint middle = window.panel.panel().pos();
    Q_EMIT window.panel.panel().moved({120, 64});
    window.controller.hide();
    QCOMPARE(window.defaults.value("fileDrop.originX"_L1).toInt(), 120);
    QCOMPARE(window.defaults.value("fileDrop.originY"_L1).toInt(), 64);
    window.controller.show();
    QCOMPARE(window.panel.panel().pos(), QPoint(120, 64));
    window.controller.hide();
    // Of a screen that is no longer there.
    window.defaults.setValue("fileDrop.originX"_L1, 9000);
    window.controller.show();
    QCOMPARE(window.panel.panel().pos(), middle);
  }

  void manyItemsDoNotFreezeTheWindow() {
    Window window;
    window.controller.show();
    QList<QUrl> urls;
    for (int number = 0; number < 20'000; ++number) urls.append(QUrl(u"file:///nowhere/%1"_s.arg(number)));
    // What it computes: others may have the machine meanwhile.
    const std::clock_t before = std::clock();
    QVERIFY(window.drop(urls));
    QVERIFY(std::clock() - before < CLOCKS_PER_SEC);
    QTRY_VERIFY(!window.controller.model().isMeasuring());
    QCOMPARE(window.controller.model().rowCount(), 20'000);
  }

  void theSettingsPageTestsTheConnection() {
    Window window;
    const FakeSystem system;
    FileDropSettingsView page(window.world.client, system);
    page.resize(560, page.sizeHint().height());
    page.show();
    auto* test = page.findChild<QPushButton*>();
    QCOMPARE(test->text(), u"Test Connection"_s);
    test->click();
    QTRY_VERIFY(!window.world.services.http.waiting.empty());
    window.world.services.http.answer(200, "https://links.example/test");
    QTRY_VERIFY(isShown(page, u"https://links.example/test"_s));
    test->click();
    QTRY_VERIFY(!window.world.services.http.waiting.empty());
    window.world.services.http.answer(500, "oops");
    QTRY_VERIFY(isShown(page, u"Upload failed (HTTP 500) oops"_s));
    QTRY_COMPARE(window.world.leftInTemporary(), QStringList());
    QVERIFY(window.pasteboard.texts.isEmpty());
  }
};

QTEST_MAIN(TestBulkUploadWindow)
#include "test_bulk_upload_window.moc"
