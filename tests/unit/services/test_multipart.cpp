#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

#include "services/multipart.h"
#include "support/strict_multipart.h"
#include "support/strict_server.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QUrl kSomewhere(u"https://links.example/v1/images"_s);
const ClipboardImage kImage{"\x89PNG\r\n--\0x", u"clipboard.png"_s, u"image/png"_s};

QByteArray headerOf(const HttpRequest& request, const QByteArray& name) {
  for (const auto& [key, value] : request.headers)
    if (key == name) return value;
  return {};
}

auto partsOf(const HttpRequest& request) { return StrictForm::parse(headerOf(request, "Content-Type"), request.body); }

FormPart part(const QByteArray& name, const ClipboardImage& image) {
  return {name, image.filename.toUtf8(), image.mimeType.toUtf8(), image.data};
}

QString writeFile(const QTemporaryDir& folder, const QString& name, const QByteArray& bytes) {
  QFile file(folder.filePath(name));
  if (!file.open(QIODevice::WriteOnly)) return {};
  file.write(bytes);
  return file.fileName();
}

}  // namespace

class TestMultipart : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void oneImageIsLaidOutByteForByte() {
    const HttpRequest request = Multipart::request(kSomewhere, "token", kImage);
    const QByteArray type = headerOf(request, "Content-Type");
    static const QRegularExpression form(
        u"^multipart/form-data; boundary=(Vantle-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12})$"_s);
    const auto match = form.match(QString::fromLatin1(type));
    QVERIFY2(match.hasMatch(), type);
    const QByteArray boundary = match.captured(1).toLatin1();
    QCOMPARE(request.body, "--" + boundary +
                               "\r\nContent-Disposition: form-data; name=\"file\"; filename=\"clipboard.png\"\r\n"
                               "Content-Type: image/png\r\n\r\n" +
                               kImage.data + "\r\n--" + boundary + "--\r\n");
    QCOMPARE(request.method, "POST");
    QCOMPARE(request.url, kSomewhere);
    QVERIFY(request.timeout == 60s);
    QCOMPARE(headerOf(request, "Authorization"), "Bearer token");
    QVERIFY(headerOf(Multipart::request(kSomewhere, {}, kImage), "Content-Type") != type);
  }

  void noTokenMeansNoHeaderAndNeitherDoesOneThatWouldBreakIt() {
    for (const QByteArray token : {"", "a\r\nX-Evil: 1"}) {
      const HttpRequest request = Multipart::request(kSomewhere, token, kImage);
      QCOMPARE(request.headers.size(), std::size_t{1});
    }
  }

  void fieldsComeFirstThenTheImages() {
    const ClipboardImage second{"two", u"größe \u65e5.png"_s, u"image/png"_s};
    const Multipart::Fields fields{{u"category"_s, u"bug"_s}, {u"text"_s, u"line\r\n--not a boundary \U0001F600"_s}};
    const FormPart category{"category", {}, {}, "bug"};
    const FormPart text{"text", {}, {}, fields.at(u"text"_s).toUtf8()};

    const auto primary = partsOf(Multipart::request(kSomewhere, {}, kImage, {second, second}, fields));
    QVERIFY(primary);
    QCOMPARE(*primary,
             (std::vector{category, text, part("file", kImage), part("files", second), part("files", second)}));
    const auto images = partsOf(Multipart::request(kSomewhere, {}, std::vector{kImage, second}, fields));
    QVERIFY(images);
    QCOMPARE(*images, (std::vector{category, text, part("files", kImage), part("files", second)}));
    const auto none = partsOf(Multipart::request(kSomewhere, {}, std::vector<ClipboardImage>{}));
    QVERIFY(none && none->empty());
  }

  void aHostileNameStaysWithinItsQuotes() {
    const ClipboardImage image{"x", u"a\"; name=\"b\r\nX: y"_s, u"text/plain\r\nX: y"_s};
    const auto parts = partsOf(Multipart::request(kSomewhere, {}, std::vector{image}));
    QVERIFY(parts);
    QCOMPARE(*parts, (std::vector{FormPart{"files", "a%22; name=%22b%0D%0AX: y", "text/plainX: y", "x"}}));
  }

  void halfASurrogateIsLeftOutAndTheRestIsSent() {
    const Multipart::Fields fields{{u"text"_s, QString(QChar(0xd800))}, {u"zone"_s, u"ok"_s}};
    const auto parts = partsOf(Multipart::request(kSomewhere, {}, kImage, fields));
    QVERIFY(parts);
    QCOMPARE(*parts, (std::vector{FormPart{"text", {}, {}, ""}, FormPart{"zone", {}, {}, "ok"}, part("file", kImage)}));
  }

  void aFileIsSentFromTheDisk() {
    QTemporaryDir folder;
    QByteArray content;
    for (int i = 0; i < 200'000; ++i) content += QByteArray::number(i);
    const QString path = writeFile(folder, u"big.bin"_s, content);
    QVERIFY(QFile::link(path, folder.filePath(u"link"_s)));
    StrictServer server;
    for (const QString& name : {u"big.bin"_s, u"link"_s}) {
      auto request = Multipart::request(server.url(u"/v1/upload"_s), "t",
                                        UploadFile{folder.filePath(name), u"x.bin"_s, Multipart::kUnknownType});
      QVERIFY(request && request->body.isEmpty());
      double progress = 0;
      request->progress = [&progress](double value) {
        QVERIFY(value >= progress && value <= 1);
        progress = value;
      };
      QtHttpClient client;
      const Job job = Job::start();
      std::optional<HttpResponse> response;
      client.send(*request, job, [&](const auto& result) { response = result.value(); });
      QTRY_VERIFY(response);
      QCOMPARE(server.malformed, 0);
      QCOMPARE(progress, 1.0);
      StrictServer::Request& sent = server.requests.back();
      const auto parts = StrictForm::parse(sent.headers["content-type"], sent.body);
      QVERIFY(parts);
      QCOMPARE(*parts, (std::vector{FormPart{"files", "x.bin", "application/octet-stream", content}}));
    }
  }

  void aFileThatShrinksWhileItIsSentIsNoUpload() {
    QTemporaryDir folder;
    const QString path = writeFile(folder, u"log"_s, QByteArray(8'000'000, 'x'));
    StrictServer server;
    auto request = Multipart::request(server.url(u"/v1/upload"_s), {}, UploadFile{path, u"log"_s, u"text/plain"_s});
    QVERIFY(request && QFile::resize(path, 1'000'000));
    QtHttpClient client;
    const Job job = Job::start();
    std::optional<std::expected<HttpResponse, HttpError>> result;
    client.send(*request, job, [&](const auto& outcome) { result = outcome; });
    QTRY_VERIFY(result);
    QVERIFY(!*result);
    QVERIFY(server.requests.empty());
  }

  void whatIsNoRegularFileIsRefused() {
    QTemporaryDir folder;
    const QString pipe = folder.filePath(u"pipe"_s);
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    for (const QString& path : {folder.path(), folder.filePath(u"none"_s), pipe})
      QVERIFY2(!Multipart::request(kSomewhere, {}, UploadFile{path, u"x"_s, u"text/plain"_s}), qPrintable(path));
  }
};

QTEST_GUILESS_MAIN(TestMultipart)
#include "test_multipart.moc"
