#include <QTest>

#include "support/fake_palette.h"
#include "support/fake_platform.h"
#include "support/fake_presenters.h"
#include "support/upload_world.h"
#include "tools/file_drop/bulk_upload_panel_controller.h"

using namespace Qt::StringLiterals;

using Phase = BulkUploadModel::Phase;

namespace {

const QByteArray kAnswer = R"({"link":"https://links.example/ü"})";

struct PanelWorld {
  PanelWorld() {
    world.services.useOwnHosts();
    panel.show();
  }

  QString file(const QString& name) { return world.file(name); }
  void drop(const QStringList& paths) {
    QList<QUrl> urls;
    for (const QString& path : paths) urls.append(QUrl::fromLocalFile(path));
    panel.add(urls);
  }
  bool press(std::uint32_t key, bool command = false) { return panel.handleKey(code(key, command)); }
  Phase phase() { return panel.model().phase(); }
  void answer(int status, const QByteArray& body) { QVERIFY(world.services.http.answer(status, body)); }
  bool isWaiting() { return !world.services.http.waiting.empty(); }

  UploadWorld world;
  FakePasteboard pasteboard;
  FakeToasts toasts;
  FakeLauncherOpener launcher;
  AppPreferences preferences{world.services.folders.file(u"app-settings.json"_s)};
  std::function<void(QList<QUrl>)> chosen;
  BulkUploadPanelController panel{
      {world.client, pasteboard, toasts, preferences, launcher, [this](auto, auto answer) { chosen = answer; }},
      &SilentPanel::make};
};

}  // namespace

class TestBulkUploadPanel : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void returnUploadsAndTheLinkLandsOnTheClipboard() {
    PanelWorld at;
    at.drop({at.file(u"a.txt"_s)});
    QVERIFY(at.world.services.http.sent.empty());
    // Right after the drop, before anything is measured: it waits for that.
    QVERIFY(at.press(keycode::kReturn));
    QTRY_VERIFY(at.isWaiting());
    QVERIFY(at.phase() == Phase::uploading);
    at.world.services.http.sent[0].progress(0.25);
    QCOMPARE(at.panel.model().progress(), 0.25);
    // Only one at a time.
    at.press(keycode::kReturn);
    at.panel.upload();
    QCOMPARE(at.world.services.http.sent.size(), std::size_t{1});
    at.answer(200, kAnswer);
    QVERIFY(at.phase() == Phase::done && at.panel.model().copied());
    QCOMPARE(at.pasteboard.texts, QStringList(u"https://links.example/%C3%BC"_s));
    QCOMPARE(at.toasts.shown.at(0).first.title, u"Archive link copied to clipboard"_s);
    QCOMPARE(at.toasts.shown[0].first.icon, u"checkmark.circle.fill"_s);
    // The result's buttons: copy again, start over.
    at.press(keycode::kReturn);
    QCOMPARE(at.pasteboard.texts.size(), 2);
    at.press(keycode::kRight);
    at.press(keycode::kRight);
    at.press(keycode::kReturn);
    QVERIFY(at.phase() == Phase::collecting);
    QCOMPARE(at.panel.model().rowCount(), 0);
  }

  void aFailureTouchesNoClipboardAndCanBeTriedAgain() {
    PanelWorld at;
    at.drop({at.file(u"a.txt"_s)});
    at.press(keycode::kReturn);
    QTRY_VERIFY(at.isWaiting());
    at.answer(500, "oops");
    QVERIFY(at.phase() == Phase::failed);
    QCOMPARE(at.panel.model().error()->description(), u"Upload failed (HTTP 500) oops"_s);
    QVERIFY(at.pasteboard.texts.isEmpty() && at.toasts.shown.empty());
    at.press(keycode::kReturn);
    QTRY_VERIFY(at.isWaiting());
    at.answer(200, "http://links.example/a");
    QVERIFY(at.phase() == Phase::done);
  }

  void whatIsWrongWithTheItemsLeadsBackToTheList() {
    PanelWorld at;
    at.drop({at.world.sparse(u"large.bin"_s, 256'000'001)});
    at.press(keycode::kReturn);
    QTRY_VERIFY(at.phase() == Phase::failed);
    at.press(keycode::kReturn);
    QVERIFY(at.phase() == Phase::collecting);
    QCOMPARE(at.panel.model().rowCount(), 1);
    QTRY_VERIFY(!at.panel.model().isMeasuring());
    QVERIFY(at.phase() == Phase::collecting && at.world.services.http.sent.empty());
  }

  void escapeCancelsFirstAndClosesThen() {
    PanelWorld at;
    at.drop({at.file(u"a.txt"_s)});
    at.press(keycode::kReturn);
    QTRY_VERIFY(at.isWaiting());
    // A window that is busy takes nothing else.
    QVERIFY(!at.press(keycode::kDelete) && !at.press(keycode::kV, true));
    QVERIFY(at.press(keycode::kEscape));
    QVERIFY(at.phase() == Phase::collecting && at.panel.isShown());
    // Cancelled for good: the answer comes to nobody.
    at.world.services.http.answer(200, "https://links.example/late");
    QVERIFY(at.pasteboard.texts.isEmpty());
    QVERIFY(at.press(keycode::kEscape));
    QVERIFY(!at.panel.isShown() && !at.press(keycode::kEscape));
    // What was collected is still there.
    at.panel.show();
    QCOMPARE(at.panel.model().rowCount(), 1);
  }

  void keysSelectRemovePasteAndChoose() {
    PanelWorld at;
    at.drop({at.file(u"a"_s), at.file(u"b"_s)});
    at.press(keycode::kDown);
    at.press(keycode::kDelete);
    QCOMPARE(at.panel.model().rowCount(), 1);
    const QByteArray file = QUrl::fromLocalFile(at.file(u"c ü"_s)).toEncoded();
    at.pasteboard.data[PasteboardFormat::fileURLs] = "# copied\r\n" + file + "\r\nhttps://example.com/\r\n";
    at.press(keycode::kV, true);
    QTRY_COMPARE(at.panel.model().rowCount(), 2);
    QCOMPARE(at.panel.model().files()[1].toEncoded(), file);
    at.press(keycode::kO, true);
    QVERIFY(at.chosen && !at.panel.isShown());
    at.chosen({QUrl::fromLocalFile(at.file(u"d"_s))});
    QVERIFY(at.panel.isShown());
    QCOMPARE(at.panel.model().rowCount(), 3);
    at.press(keycode::kDelete, true);
    QCOMPARE(at.panel.model().rowCount(), 0);
    at.press(keycode::kReturn);
    QVERIFY(at.phase() == Phase::collecting);
  }

  void escapeGoesBackToTheLauncher() {
    PanelWorld at;
    at.panel.hide();
    at.launcher.startedFromLauncher = true;
    at.panel.show();
    at.press(keycode::kEscape);
    QCOMPARE(at.launcher.shown, QStringList(u"bulk-upload"_s));
  }
};

QTEST_GUILESS_MAIN(TestBulkUploadPanel)
#include "test_bulk_upload_panel.moc"
