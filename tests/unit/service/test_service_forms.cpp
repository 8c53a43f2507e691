#include <QtTest>

#include "service/http/multipart_reader.h"
#include "service/links/byte_range.h"

using namespace Qt::StringLiterals;

namespace {

/// The parts as one text: name, file name, type and content of each.
class Notes final : public PartReceiver {
 public:
  void beginPart(const PartHead& head) override {
    text += '[' + head.name + '|' + head.fileName.value_or("-") + '|' + head.type + '|';
  }
  void takePart(std::string_view bytes) override { text.append(bytes.data(), static_cast<qsizetype>(bytes.size())); }
  void endPart() override { text += ']'; }

  QByteArray text;
};

struct Result {
  QByteArray text;
  bool isComplete = false;
  bool hasError = false;

  bool operator==(const Result&) const = default;
};

Result readForm(const QByteArray& form, qsizetype piece) {
  Notes notes;
  MultipartReader reader("B", notes);
  for (qsizetype at = 0; at < form.size(); at += piece) reader.feed(form.mid(at, piece).toStdString());
  return {notes.text, reader.isComplete(), reader.error() != nullptr};
}

QByteArray part(const QByteArray& head, const QByteArray& content) {
  return "--B\r\nContent-Disposition: form-data; " + head + "\r\n\r\n" + content + "\r\n";
}

}  // namespace

class TestServiceForms : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aFormIsTheSameHoweverItIsCut() {
    const QByteArray form = part("name=\"a\"", "one\r\n--") +
                            part("name=\"f\"; filename=\"x\"\r\nContent-Type: t/u", "") +
                            part("name=\"g\"; filename=\"y\"", "\r\r\n-\r\n--b\r\n\r\n--A\r") + "--B--\r\nafter it";
    const Result whole = readForm(form, form.size());
    QCOMPARE(whole.text, "[a|-||one\r\n--][f|x|t/u|][g|y||\r\r\n-\r\n--b\r\n\r\n--A\r]");
    QVERIFY(whole.isComplete && !whole.hasError);
    for (qsizetype piece = 1; piece < form.size(); ++piece) QCOMPARE(readForm(form, piece), whole);
    for (qsizetype size = 0; size < form.indexOf("--B--") + 5; ++size)
      QVERIFY(!readForm(form.first(size), size + 1).isComplete);
  }

  void heads_data() {
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("quote as it is") << "name=\"f\"; filename=\"a\"b.zip\""_ba << "f|a\"b.zip|"_ba;
    QTest::newRow("quote and semicolon") << "name=\"f\"; filename=\"a\"; b.zip\""_ba << "f|a\"; b.zip|"_ba;
    QTest::newRow("escaped quote") << "name=\"f\"; filename=\"a\\\"b%22c\""_ba << "f|a\"b\"c|"_ba;
    QTest::newRow("backslash at the end") << "name=\"f\"; filename=\"a\\\""_ba << "f|a\\|"_ba;
    QTest::newRow("encoded name wins") << "name=f; filename=\"a\"; filename*=utf-8''%e2%98%83"_ba << "f|\u2603|"_ba;
    QTest::newRow("other header, odd case") << "name=\"f\"\r\ncontent-TYPE:  a/b \r\nX-Y: z"_ba << "f|-|a/b"_ba;
    QTest::newRow("empty file name") << "name=\"f\"; filename=\"\""_ba << "f||"_ba;
  }

  void heads() {
    QFETCH(QByteArray, head);
    QFETCH(QByteArray, expected);
    QCOMPARE(readForm(part(head, "") + "--B--", 7).text, '[' + expected + "|]");
  }

  void whatIsNoForm_data() {
    QTest::addColumn<QByteArray>("form");
    QTest::newRow("other boundary") << "--C\r\n"_ba;
    QTest::newRow("text before") << "x\r\n--B\r\n"_ba;
    QTest::newRow("boundary goes on") << "--Bx\r\n"_ba;
    QTest::newRow("half an end") << part("name=\"a\"", "") + "--B-x";
    QTest::newRow("no disposition") << "--B\r\nContent-Type: a/b\r\n\r\n"_ba;
    QTest::newRow("two dispositions") << part("name=\"a\"\r\nContent-Disposition: form-data; name=\"b\"", "");
    QTest::newRow("no name") << part("filename=\"a\"", "");
    QTest::newRow("two names") << part("name=\"a\"; name=\"b\"", "");
    QTest::newRow("open quote") << part("name=\"a", "");
    QTest::newRow("no header") << part("name=\"a\"\r\nwords", "");
    QTest::newRow("folded header") << part("name=\"a\"\r\n folded: x", "");
    QTest::newRow("NUL") << part(QByteArray("name=\"a\0\"", 9), "");
    QTest::newRow("attachment") << "--B\r\nContent-Disposition: attachment; name=\"a\"\r\n\r\n"_ba;
  }

  void whatIsNoForm() {
    QFETCH(QByteArray, form);
    for (const qsizetype piece : {form.size(), qsizetype(1)}) {
      const Result result = readForm(form, piece);
      QVERIFY(result.hasError && !result.isComplete);
    }
  }

  void isBounded() {
    QVERIFY(readForm("--B\r\n" + QByteArray(9000, 'x'), 100).hasError);
    QByteArray parts;
    for (int i = 0; i < 32; ++i) parts += part("name=\"a\"", "");
    QVERIFY(readForm(parts + "--B--", 1000).isComplete);
    QVERIFY(readForm(parts + part("name=\"a\"", "") + "--B--", 1000).hasError);
  }

  void boundaries() {
    QCOMPARE(MultipartReader::boundary("multipart/form-data; boundary=Vantle-1"), "Vantle-1"_ba);
    QCOMPARE(MultipartReader::boundary("Multipart/Form-Data;x=y; BOUNDARY=\"a b\""), "a b"_ba);
    for (const char* wrong : {"multipart/mixed; boundary=a", "multipart/form-data", "multipart/form-data; boundary=",
                              "multipart/form-data; boundary=a\rb", "multipart/form-data; boundary=\"a \"", ""})
      QVERIFY2(!MultipartReader::boundary(wrong), wrong);
    QVERIFY(!MultipartReader::boundary("multipart/form-data; boundary=" + QByteArray(71, 'x')));
  }

  void ranges() {
    const auto of = [](const char* header, qint64 size = 100) {
      const ByteRange range = ByteRange::of(header, size);
      return std::tuple(range.kind, range.offset, range.size);
    };
    using enum ByteRange::Kind;
    QCOMPARE(of("bytes=0-0"), std::tuple(part, 0, 1));
    QCOMPARE(of("bytes=10-"), std::tuple(part, 10, 90));
    QCOMPARE(of("bytes=10-1000"), std::tuple(part, 10, 90));
    QCOMPARE(of("bytes=-10"), std::tuple(part, 90, 10));
    QCOMPARE(of("bytes=-1000"), std::tuple(part, 0, 100));
    for (const char* beyond : {"bytes=100-", "bytes=100-200", "bytes=-0"})
      QCOMPARE(std::get<0>(of(beyond)), impossible);
    QCOMPARE(std::get<0>(of("bytes=0-", 0)), impossible);
    for (const char* none : {"", "bytes=", "bytes=-", "bytes=5-4", "bytes=+1-2", "bytes=1--2", "lines=1-2",
                             "bytes=0-1,5-6", "bytes=99999999999999999999-"})
      QCOMPARE(std::get<0>(of(none)), whole);
  }
};

QTEST_GUILESS_MAIN(TestServiceForms)
#include "test_service_forms.moc"
