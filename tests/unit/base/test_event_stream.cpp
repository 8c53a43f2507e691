#include <QTest>

#include "base/event_stream.h"

namespace {

constexpr qsizetype kRoom = 1000;

std::vector<StreamEvent> readIn(const QByteArray& stream, qsizetype pieces) {
  EventStreamReader reader(kRoom);
  std::vector<StreamEvent> all;
  for (qsizetype at = 0; at < stream.size(); at += pieces)
    for (const StreamEvent& event :
         reader.read(QByteArrayView(stream).sliced(at).first(std::min(pieces, stream.size() - at))))
      all.push_back(event);
  return all;
}

}  // namespace

class TestEventStream : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void eventsAreReadHoweverTheyAreCutAndTheirLinesEnd() {
    for (const QByteArray& lineEnd : {QByteArray("\n"), QByteArray("\r\n"), QByteArray("\r")}) {
      QByteArray stream =
          "\xef\xbb\xbf"
          "event: delta\ndata: {\"text\":\"Gr\xc3\xbc\xc3\x9f"
          "e\"}\n\n: a comment\nid: 7\nretry\ndata:one\n"
          "data:  two\ndata\n\nevent: nothing\n\ndata: last\n\ndata: unfinished";
      stream.replace("\n", lineEnd);
      const std::vector<StreamEvent> expected = {{"delta",
                                                  "{\"text\":\"Gr\xc3\xbc\xc3\x9f"
                                                  "e\"}"},
                                                 {"message", "one\n two\n"},
                                                 {"message", "last"}};
      for (const qsizetype pieces : {1, 2, 3, 7, 1000}) QVERIFY(readIn(stream, pieces) == expected);
    }
  }

  void anEventThatIsTooLargeEndsTheReading() {
    EventStreamReader reader(100);
    QCOMPARE(reader.read("data: " + QByteArray(94, 'x') + "\n\n").size(), 1U);
    QVERIFY(!reader.hasOverflown());
    for (const QByteArray& flood : {QByteArray(101, 'x'), QByteArray("data: xxxxxxx\n").repeated(20)}) {
      EventStreamReader flooded(100);
      QVERIFY(flooded.read(flood).empty());
      QVERIFY(flooded.hasOverflown());
      QVERIFY(flooded.read("\n\ndata: x\n\n").empty());
    }
  }
};

QTEST_GUILESS_MAIN(TestEventStream)
#include "test_event_stream.moc"
