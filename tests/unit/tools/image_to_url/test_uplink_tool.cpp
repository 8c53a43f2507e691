#include <QTest>

#include "support/files.h"
#include "support/strict_multipart.h"
#include "support/uplink_world.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QByteArray kLinkAnswer = R"({"url": "https://links.example/l/a%20b"})";
const QByteArray kOverride = R"({"endpoint": " https://own.example/up\t", "token": ""})";
const QByteArray kUnknownSource = R"({"source": "carrier pigeon"})";

}  // namespace

class TestUplinkTool : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    world_ = std::make_unique<UplinkWorld>();
    tool_ = world_->makeTool(world_->permissions);
  }
  void cleanup() {
    tool_.reset();
    world_.reset();
  }

  void aCopiedImageBecomesALink() {
    world_->copyImage(60'000);
    tool_->activate();
    QTRY_COMPARE(world_->http.sent.size(), 1U);
    QCOMPARE(world_->toast(), u"Uploading image… (58 KB)||120"_s);
    QCOMPARE(world_->toasts.shown.back().first.icon, u"arrow.up.circle"_s);
    QVERIFY(world_->pasteboard.texts.isEmpty());
    const HttpRequest& request = world_->http.sent.front();
    QCOMPARE(request.url, QUrl(u"http://127.0.0.1:9/v1/images"_s));
    QCOMPARE(request.method, "POST");
    QVERIFY(request.answerDeadline == 120s);
    QCOMPARE(headerOf(request, "Authorization"), "Bearer embedded");
    const std::vector<FormPart> parts{{"file", "clipboard.png", "image/png", UplinkWorld::somePNG(60'000)}};
    QCOMPARE(StrictForm::parse(headerOf(request, "Content-Type"), request.body), std::optional(parts));

    world_->preferences.update([](Preferences& values) { values.toastDuration = 6; });
    QVERIFY(world_->http.answer(200, kLinkAnswer));
    QCOMPARE(world_->pasteboard.texts, QStringList(u"https://links.example/l/a%20b"_s));
    QCOMPARE(world_->toast(), u"Link copied to clipboard|https://links.example/l/a%20b|6"_s);
    QCOMPARE(world_->toasts.shown.back().first.icon, u"checkmark.circle.fill"_s);
    QVERIFY(world_->toasts.shown.back().first.completes);
  }

  void withoutAnImageTheShortcutIsTold() {
    tool_->activate();
    QTRY_COMPARE(world_->toast(), u"No image on the clipboard|Copy an image first, then press ⌃⌥U|4"_s);
    QCOMPARE(world_->toasts.shown.back().first.icon, u"photo.badge.exclamationmark"_s);
    QCOMPARE(world_->toasts.shown.back().first.iconColor, QColor(Qt::white));
    world_->shortcut.clear();
    tool_->activate();
    QTRY_COMPARE(world_->toast(), u"No image on the clipboard|Copy an image first, then start Image to URL again|4"_s);
    QVERIFY(world_->http.sent.empty());
  }

  void aRegionOfTheScreenBecomesALink() {
    selectLive();
    tool_->activate();
    QCOMPARE(world_->regions.labels, QStringList(u"Image to URL"_s));
    QCOMPARE(world_->regions.icons, QStringList(u"link.badge.plus"_s));
    world_->regions.select("pixels");
    QTRY_COMPARE(world_->http.sent.size(), 1U);
    QVERIFY(world_->http.sent.front().body.contains("filename=\"selection.png\"\r\nContent-Type: image/png\r\n"));
    QCOMPARE(world_->pasteboard.reads, 0);
    tool_->activate();
    world_->regions.cancel();
    QCoreApplication::processEvents();
    QCOMPARE(world_->http.sent.size(), 1U);
    QCOMPARE(world_->toasts.shown.size(), 1U);
  }

  void withoutThePermissionItsPageOpens() {
    selectLive();
    world_->permissions.screenRecording = PermissionState::notGranted;
    tool_->activate();
    QCOMPARE(world_->toast(),
             u"Screen Recording permission needed|Enable Vantle in Settings → Privacy, then relaunch|8"_s);
    QCOMPARE(world_->permissions.pages, std::vector{Permission::screenRecording});
    QVERIFY(world_->regions.labels.isEmpty());
    FakePagelessPermissions pageless;
    world_->makeTool(pageless)->activate();
    QCOMPARE(world_->toast(), u"Screen Recording permission needed|Log in to a desktop.|8"_s);
  }

  void eachActivationGoesItsOwnWay() {
    world_->copyImage(2048);
    tool_->activate();
    QTRY_COMPARE(world_->http.sent.size(), 1U);
    world_->copyImage(4096);
    tool_->activate();
    QTRY_COMPARE(world_->http.sent.size(), 2U);
    QVERIFY(world_->http.answer(500, "a\nb\x1b[31m"));
    QCOMPARE(world_->toast(), u"Upload failed|Upload failed (HTTP 500) a\\nb\\u{1b}[31m|8"_s);
    QVERIFY(world_->pasteboard.texts.isEmpty());
    QVERIFY(world_->http.answer(200, "https://links.example/l/2\n"));
    QCOMPARE(world_->pasteboard.texts, QStringList(u"https://links.example/l/2"_s));
    QVERIFY(!world_->http.answer(200, "https://links.example/l/3"));
  }

  void theEndOfTheProgramIsSilent() {
    world_->copyImage();
    tool_->activate();
    QTRY_COMPARE(world_->http.sent.size(), 1U);
    selectLive();
    tool_->activate();
    const std::size_t shown = world_->toasts.shown.size();
    tool_.reset();
    world_->regions.select("pixels");
    QVERIFY(world_->http.answer(200, "https://links.example/l/1"));
    QVERIFY(world_->pasteboard.texts.isEmpty());
    QCOMPARE(world_->toasts.shown.size(), shown);
  }

  void anOverrideAndAMissingServiceAreHeeded() {
    world_->copyImage();
    QVERIFY(writeFile(world_->folders.file(u"Uplink/config.json"_s), kOverride));
    tool_->activate();
    QTRY_COMPARE(world_->http.sent.size(), 1U);
    QCOMPARE(world_->http.sent.front().url, QUrl(u"https://own.example/up"_s));
    QVERIFY(headerOf(world_->http.sent.front(), "Authorization").isNull());
    QVERIFY(QFile::remove(world_->folders.file(u"Uplink/config.json"_s)));
    world_->builtIn.place = std::unexpected(ServiceError{ServiceError::Reason::configuration, u"There is none."_s});
    tool_->activate();
    QTRY_COMPARE(world_->toast(), u"Upload failed|There is none.|8"_s);
  }

  void theSourceIsKeptInItsFile() {
    selectLive();
    const QString path = world_->folders.file(u"Uplink/settings.json"_s);
    QCOMPARE(readFile(path).simplified(), "{ \"source\": \"liveSelection\" }");
    QCOMPARE(UplinkStore(path).value().source, ImageSource::liveSelection);
    QVERIFY(writeFile(path, kUnknownSource));
    QCOMPARE(UplinkStore(path).value().source, ImageSource::clipboard);
  }

  void theTestImageIsAnImage() { QCOMPARE(QImage::fromData(uplinkTestImage().data, "png").size(), QSize(1, 1)); }

 private:
  void selectLive() {
    world_->settings.update([](UplinkSettings& settings) { settings.source = ImageSource::liveSelection; });
  }
  static QByteArray headerOf(const HttpRequest& request, const QByteArray& name) {
    for (const auto& [key, value] : request.headers)
      if (key == name) return value;
    return {};
  }

  std::unique_ptr<UplinkWorld> world_;
  std::unique_ptr<UplinkTool> tool_;
};

QTEST_GUILESS_MAIN(TestUplinkTool)
#include "test_uplink_tool.moc"
