#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>
#include <QUrl>

#include <sys/stat.h>

#include "capture/image_decoding.h"
#include "services/clipboard_images.h"
#include "support/fake_platform.h"
#include "support/files.h"

using namespace Qt::StringLiterals;

namespace {

QImage picture(QColor color, QSize size = {7, 5}) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(color);
  return image;
}

QByteArray encoded(const QImage& image, const char* format) {
  QByteArray bytes;
  QBuffer file(&bytes);
  QImageWriter writer(&file, format);
  writer.setQuality(100);
  return writer.write(image) ? bytes : QByteArray();
}

QImage blank(QSize size) {
  QImage image(size, QImage::Format_Mono);
  image.fill(0);
  return image;
}

struct Stage {
  /// What is on the pasteboard, as a tool would get it.
  std::optional<ClipboardImage> read() {
    std::optional<std::optional<ClipboardImage>> answer;
    images.read(job, [&answer](const auto& image) { answer = image; });
    if (!QTest::qWaitFor([&] { return answer.has_value(); })) qFatal("no answer");
    return *answer;
  }
  /// The colour of the picture's middle; none without one.
  QColor color() {
    const auto image = read();
    if (!image || image->filename != u"clipboard.png"_s || image->mimeType != u"image/png"_s) return {};
    const QImage decoded = QImage::fromData(image->data, "png");
    return decoded.isNull() ? QColor() : decoded.pixelColor(decoded.rect().center());
  }
  QByteArray url(const QString& name) const { return QUrl::fromLocalFile(directory.filePath(name)).toEncoded(); }
  void offerFiles(const QByteArray& lines) { pasteboard.data = {{PasteboardFormat::fileURLs, lines}}; }

  QTemporaryDir directory;
  FakePasteboard pasteboard;
  ClipboardImages images{pasteboard};
  Job job = Job::start();
};

}  // namespace

class TestClipboardImages : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void theFirstKindThatIsThereIsTaken() {
    Stage stage;
    QVERIFY(!stage.read());
    QVERIFY(writeFile(stage.directory.filePath(u"blue.png"_s), encoded(picture(Qt::blue), "png")));
    stage.pasteboard.data = {
        {PasteboardFormat::bmp, encoded(picture(Qt::white), "bmp")},
        {PasteboardFormat::fileURLs, stage.url(u"blue.png"_s)},
        {PasteboardFormat::tiff, encoded(picture(Qt::green), "tiff")},
        {PasteboardFormat::jpeg, encoded(picture(Qt::black), "jpeg")},
        {PasteboardFormat::png, encoded(picture(Qt::red), "png")},
    };
    for (const auto& [format, expected] : {std::pair{PasteboardFormat::png, Qt::red},
                                           {PasteboardFormat::jpeg, Qt::black},
                                           {PasteboardFormat::tiff, Qt::green},
                                           {PasteboardFormat::fileURLs, Qt::blue},
                                           {PasteboardFormat::bmp, Qt::white}}) {
      QCOMPARE(stage.color(), QColor(expected));
      stage.pasteboard.data.erase(format);
    }
  }

  void aPNGIsTakenByteForByte() {
    Stage stage;
    const QByteArray png = encoded(picture(Qt::red), "png") + "left as it is";
    stage.pasteboard.data = {{PasteboardFormat::png, png}};
    QCOMPARE(stage.read(), (ClipboardImage{png, u"clipboard.png"_s, u"image/png"_s}));
  }

  void transparencyStays() {
    Stage stage;
    QImage half(4, 4, QImage::Format_ARGB32);
    half.fill(QColor(255, 0, 0, 128));
    stage.pasteboard.data = {{PasteboardFormat::tiff, encoded(half, "tiff")}};
    QCOMPARE(stage.color().alpha(), 128);
  }

  void whatCannotBeDecodedCountsAsNotThere() {
    Stage stage;
    stage.pasteboard.data = {{PasteboardFormat::png, "no PNG"},
                             {PasteboardFormat::jpeg, encoded(picture(Qt::red), "jpeg").left(40)},
                             {PasteboardFormat::tiff, "II*"}};
    QVERIFY(!stage.read());
    stage.pasteboard.data[PasteboardFormat::bmp] = encoded(picture(Qt::blue), "bmp");
    QCOMPARE(stage.color(), QColor(Qt::blue));
  }

  void theFirstFileThatIsNamedAnImageCounts() {
    Stage stage;
    for (const QString& name : {u"ünï code.JPG"_s, u"notes.txt"_s, u"second.png"_s})
      QVERIFY(writeFile(stage.directory.filePath(name), encoded(picture(Qt::black), "jpeg")));
    QVERIFY(QFile::link(stage.directory.filePath(u"ünï code.JPG"_s), stage.directory.filePath(u"link.jpeg"_s)));
    stage.offerFiles("# copied\r\nhttps://example.org/a.png\r\nfile://elsewhere/a.png\r\n" + stage.url(u"notes.txt"_s) +
                     "\r\n" + stage.url(u"ünï code.JPG"_s) + "\r\n" + stage.url(u"second.png"_s) + "\r\n");
    QCOMPARE(stage.color(), QColor(Qt::black));
    stage.offerFiles("file://localhost" + stage.url(u"link.jpeg"_s).mid(7));
    QCOMPARE(stage.color(), QColor(Qt::black));
    stage.offerFiles(stage.url(u"notes.txt"_s));
    QVERIFY(!stage.read());
  }

  void onlyRegularFilesAreOpened() {
    Stage stage;
    QVERIFY(QDir(stage.directory.path()).mkdir(u"folder.png"_s));
    QCOMPARE(mkfifo(qPrintable(stage.directory.filePath(u"pipe.png"_s)), 0600), 0);
    QVERIFY(QFile::link(u"/dev/zero"_s, stage.directory.filePath(u"endless.png"_s)));
    QFile sparse(stage.directory.filePath(u"huge.png"_s));
    QVERIFY(sparse.open(QIODevice::WriteOnly) && sparse.resize(Pasteboard::kLargestData + 1));
    for (const QString& name : {u"folder.png"_s, u"pipe.png"_s, u"endless.png"_s, u"huge.png"_s, u"missing.png"_s}) {
      stage.offerFiles(stage.url(name));
      QVERIFY2(!stage.read(), qPrintable(name));
    }
  }

  void drawingsAndBombsAreNotDecoded() {
    const QByteArray drawing = "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>";
    QVERIFY(decodedImage(drawing).isNull());
    // Few bytes on the wire, and with one bit a pixel few in memory; as other pictures have them they would be many.
    QVERIFY(decodedImage(encoded(blank({10'001, 10'000}), "png")).isNull());
    QVERIFY(!decodedImage(encoded(blank({10'000, 5'000}), "png")).isNull());
    QVERIFY(
        decodedImage("BM" + QByteArray(12, '\0') + QByteArray::fromHex("28000000ff7f0000ff7f000001002000")).isNull());
    QVERIFY(!decodedImage(encoded(picture(Qt::red, {1000, 1000}), "png")).isNull());
  }

  void noAnswerComesAfterTheEnd() {
    Stage stage;
    stage.pasteboard.data = {{PasteboardFormat::tiff, encoded(picture(Qt::red, {2000, 2000}), "tiff")}};
    bool isAnswered = false;
    stage.images.read(stage.job, [&isAnswered](const auto&) { isAnswered = true; });
    stage.job.cancel();
    QVERIFY(QThreadPool::globalInstance()->waitForDone(5000));
    QCoreApplication::processEvents();
    QVERIFY(!isAnswered);
  }
};

QTEST_GUILESS_MAIN(TestClipboardImages)
#include "test_clipboard_images.moc"
