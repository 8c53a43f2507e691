#include <QTest>

#include <sys/stat.h>

#include "capture/image_decoding.h"
#include "support/files.h"
#include "support/generate_image_world.h"
#include "support/strict_multipart.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QByteArray json(QByteArray text) { return text.replace('\'', '"'); }

const QByteArray kDrawing = json(
    "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='9' height='9'>"
    "<image xlink:href='file:///etc/passwd'/><image xlink:href='http://127.0.0.1:9/seen.png'/></svg>");
/// 60 000 pixels wide and high, in 70 bytes.
const QByteArray kHuge = QByteArray::fromBase64(
    "iVBORw0KGgoAAAANSUhEUgAA6mAAAOpgCAYAAACA0nVCAAAADElEQVR4nGNgoD0AAABkAAGGZDw1AAAAAElFTkSuQmCC");
/// A GIF of a red and a blue picture.
const QByteArray kFilm = QByteArray::fromBase64(
    "R0lGODlhAgABAPEAAP8AAAAA/wAAAP///yH/"
    "C05FVFNDQVBFMi4wAwEAAAAh+QQACgAAACwAAAAAAgABAAACAgQKACH5BAAKAAAALAAAAAACAAEAAAICTAoAOw==");

struct Stage : GenerateImageWorld {
  void generate(const ImageRequest& request = {u"a fox"_s, {}, false, {}}) {
    outcome.reset();
    job = Job::start();
    client.generate(request, job, [this](const auto& result) { outcome = result; });
  }
  /// The request on its way to the service.
  const HttpRequest& sent() {
    if (!QTest::qWaitFor([this] { return !http.waiting.empty(); })) qFatal("nothing was sent");
    return http.sent.back();
  }

  Job job;
  std::optional<GenerateImageClient::Outcome> outcome;
};

}  // namespace

class TestGenerateImageClient : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void theFormHoldsWhatIsAskedFor() {
    Stage stage;
    stage.generate({u"größer"_s, {ImageSize::portrait, ImageQuality::high}, true, {"one", "two"}});
    const HttpRequest& request = stage.sent();
    QCOMPARE(request.url, QUrl(u"https://api.example/v1/image-generate"_s));
    QCOMPARE(headerOf(request, "Authorization"), "Bearer secret");
    QCOMPARE(request.timeout, std::chrono::milliseconds(180s));
    QVERIFY(request.maximumAnswer >= 64'000'000);
    QVERIFY(request.answerDeadline > request.timeout);
    const std::vector<FormPart> parts{{"edit", {}, {}, "true"},
                                      {"prompt", {}, {}, "größer"},
                                      {"quality", {}, {}, "high"},
                                      {"size", {}, {}, "1024x1536"},
                                      {"files", "image-1.png", "image/png", "one"},
                                      {"files", "image-2.png", "image/png", "two"}};
    QCOMPARE(StrictForm::parse(headerOf(request, "Content-Type"), request.body), std::optional(parts));
    stage.http.answer(200, imageAnswer(pngPicture()));
    QTRY_VERIFY(stage.outcome);
    QCOMPARE((*stage.outcome)->png, pngPicture());
    QCOMPARE((*stage.outcome)->size, QSize(48, 32));
  }

  void theBuiltInServicesTokenGoesNowhereElse() {
    Stage stage;
    stage.services.configuration.update([](ServiceSettings& settings) { settings = {}; });
    stage.generate();
    QCOMPARE(headerOf(stage.sent(), "Authorization"), "Bearer embedded");
    stage.http.waiting.clear();
    const QString file = stage.folders.file(u"GenerateImage/config.json"_s);
    QVERIFY(writeFile(file, json("{'endpoint': 'https://own.example/draw', 'token': ''}")));
    stage.generate();
    QCOMPARE(headerOf(stage.sent(), "Authorization"), "Bearer secret");
    QCOMPARE(stage.http.sent.back().url, QUrl(u"https://own.example/draw"_s));
  }

  void anImageIsFoundInTheUsualPlaces_data() {
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("type");
    const QByteArray data = pngPicture().toBase64();
    const QByteArray type = "application/json";
    QTest::addRow("images, data") << imageAnswer(pngPicture()) << type;
    QTest::addRow("image") << json("{'image':'" + data + "'}") << type;
    QTest::addRow("the data's first") << json("{'data':[{'b64_json':'" + data + "'}]}") << type;
    QTest::addRow("data, image") << json("{'data':{'image':'" + data + "'}}") << type;
    QTest::addRow("as in pages") << json("{'image':'data:image/png;base64," + data + "'}") << type;
    QTest::addRow("after what is none") << json("{'images':[{'data':'%%%'}],'image':'" + data + "'}") << type;
    QTest::addRow("the body itself") << pngPicture() << QByteArray("image/png");
  }
  void anImageIsFoundInTheUsualPlaces() {
    QFETCH(const QByteArray, body);
    QFETCH(const QByteArray, type);
    const auto image = imageIn({200, {{"content-type", type}}, body});
    QVERIFY(image);
    QCOMPARE(image->png, pngPicture());
  }

  void otherPicturesBecomeAPNGAndLargeOnesAreShownSmaller() {
    const auto image = imageIn({200, {{"Content-Type", "image/bmp"}}, pngPicture({3000, 30}, Qt::blue, "bmp")});
    QVERIFY(image);
    QVERIFY(image->png.startsWith("\x89PNG"));
    QCOMPARE(image->size, QSize(3000, 30));
    QCOMPARE(image->picture.width(), GeneratedImage::kShownEdge);
    QCOMPARE(image->picture.pixelColor(9, 9), QColor(Qt::blue));
  }

  void whatIsNoPictureIsSaidToBeNone_data() {
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QString>("reason");
    const QByteArray json = "application/json";
    const QString damaged = GenerateImageError::damagedImage().description();
    QTest::addRow("nothing") << QByteArray() << json << u"No image in response: "_s;
    QTest::addRow("an empty image")
        << imageAnswer({}) << json
        << u"No image in response: {\"images\":[{\"data\":\"\",\"mimeType\":\"image/png\"}]}"_s;
    QTest::addRow("words") << QByteArray("I cannot draw that.") << QByteArray("text/plain")
                           << u"No image in response: I cannot draw that."_s;
    QTest::addRow("words called a picture")
        << QByteArray("Sorry.") << QByteArray("image/png") << u"No image in response: Sorry."_s;
    QTest::addRow("a drawing that loads others") << imageAnswer(kDrawing) << json << damaged;
    QTest::addRow("more pixels than fit") << imageAnswer(kHuge) << json << damaged;
    QTest::addRow("half a picture") << pngPicture({400, 400}).first(200) << QByteArray("image/png") << damaged;
    QTest::addRow("of no size") << imageAnswer("\x89PNG\r\n\x1a\n") << json << damaged;
  }
  void whatIsNoPictureIsSaidToBeNone() {
    QFETCH(const QByteArray, body);
    QFETCH(const QByteArray, type);
    const auto image = imageIn({200, {{"Content-Type", type}}, body});
    QVERIFY(!image);
    QTEST(image.error().description(), "reason");
    QVERIFY(!preparedReference(body, 10));
  }

  void aPictureOfAnyNameIsTakenAndOfAFilmTheFirst() {
    const auto png = imageIn({200, {{"Content-Type", "text/html"}}, pngPicture()});
    QVERIFY(png && png->png == pngPicture());
    const auto film = imageIn({200, {}, kFilm});
    QVERIFY(film);
    QCOMPARE(film->picture.pixelColor(1, 0), QColor(Qt::red));
    QVERIFY(isPNG(film->png) && isPNG(preparedReference(kFilm, 10)->png));
  }

  /// Without reading them: a file of 200 MB, a pipe that nobody writes to, a folder, a link that leads nowhere.
  void filesThatCannotBePicturesAreNotRead() {
    const QTemporaryDir directory;
    const auto path = [&](const QString& name) { return directory.filePath(name); };
    QFile huge(path(u"huge.png"_s));
    QVERIFY(huge.open(QFile::WriteOnly) && huge.write(pngPicture()) > 0 && huge.resize(200'000'000));
    QCOMPARE(mkfifo(QFile::encodeName(path(u"pipe.png"_s)).constData(), 0600), 0);
    QVERIFY(QDir(directory.path()).mkdir(u"folder.png"_s) && QFile::link(u"/nowhere"_s, path(u"link.png"_s)));
    for (const auto* name : {"huge.png", "pipe.png", "folder.png", "link.png", "gone.png"})
      QVERIFY2(imageFileContents(path(QString::fromLatin1(name))).isEmpty(), name);
    QVERIFY(writeFile(path(u"good.png"_s), pngPicture()) && QFile::link(path(u"good.png"_s), path(u"to.png"_s)));
    QCOMPARE(imageFileContents(path(u"to.png"_s)), pngPicture());
  }

  void aLargeReferenceIsMadeSmaller() {
    const auto reference = preparedReference(pngPicture({5000, 100}), 10);
    QVERIFY(reference);
    QCOMPARE(QImage::fromData(reference->png).size(), QSize(4096, 81));
    const auto small = preparedReference(pngPicture({4096, 100}), 10);
    QCOMPARE(small->png, pngPicture({4096, 100}));
    QCOMPARE(small->thumbnail.height(), 10);
  }

  void aCancelledRunIsSilent() {
    Stage stage;
    stage.generate();
    stage.sent();
    stage.http.answer(200, imageAnswer(pngPicture({2000, 2000})));
    stage.job.cancel();
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    QVERIFY(!stage.outcome);
  }
};

QTEST_GUILESS_MAIN(TestGenerateImageClient)
#include "test_generate_image_client.moc"
