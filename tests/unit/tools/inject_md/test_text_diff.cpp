#include "tools/inject_md/text_diff.h"

#include <QTest>

#include <random>

using namespace Qt::StringLiterals;

namespace {

using Kind = DiffLine::Kind;

/// "-" and "+" for lines that go and come, as people write them.
QString written(const TextDiff& diff) {
  QString text;
  for (const DiffLine& line : diff.lines) {
    const QChar sign = line.kind == Kind::added ? u'+' : line.kind == Kind::removed ? u'-' : u' ';
    text += (line.kind == Kind::omission ? u"…"_s : QString(sign)) + line.text + u'|';
  }
  return text;
}

QString numbers(int from, int to) {
  QString text;
  for (int number = from; number < to; ++number) text += QString::number(number) + u'\n';
  return text;
}

/// Texts of a few different lines, so that they have much in common.
QString randomText(std::mt19937& random) {
  QString text;
  for (auto count = random() % 12; count > 0; --count) text += QChar(static_cast<uint>(97 + random() % 4)) + u"\n"_s;
  return text;
}

}  // namespace

class TestTextDiff : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void tellsWhatChanges_data() {
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("lines");
    const QString none;
    QTest::newRow("nothing there") << u""_s << u"a\nb\n"_s << u"adds 2 lines"_s << u"+a|+b|"_s;
    QTest::newRow("all gone") << u"a\n"_s << u""_s << u"removes 1 line"_s << u"-a|"_s;
    QTest::newRow("the same") << u"a\n"_s << u"a\n"_s << u"nothing would change"_s << none;
    QTest::newRow("swapped") << u"a\nb\n"_s << u"b\na\n"_s << u"adds 1 line, removes 1 line"_s << u"-a| b|+a|"_s;
    QTest::newRow("in between") << u"a\nc\n"_s << u"a\nb\nc\n"_s << u"adds 1 line"_s << u" a|+b| c|"_s;
    QTest::newRow("no last end") << u"a\nb"_s << u"a\nb\n"_s << u"ends the last line"_s << none;
    QTest::newRow("last end goes") << u"a\nb\n"_s << u"a\nb"_s << u"leaves the last line without an end"_s << none;
    QTest::newRow("CRLF") << u"a\r\nb\r\n"_s << u"a\nb\n"_s << u"changes the line ends"_s << none;
    QTest::newRow("CRLF without last end")
        << u"a\r\nb"_s << u"a\nc\n"_s << u"adds 1 line, removes 1 line, changes the line ends"_s << u" a|-b|+c|"_s;
    QTest::newRow("a lone return is text")
        << u"a\rb\n"_s << u"a\n"_s << u"adds 1 line, removes 1 line"_s << u"-a\rb|+a|"_s;
    QTest::newRow("far apart") << numbers(0, 20) << u"x\n"_s + numbers(0, 19) << u"adds 1 line, removes 1 line"_s
                               << u"+x| 0| 1|…15 lines unchanged| 17| 18|-19|"_s;
  }
  void tellsWhatChanges() {
    QFETCH(QString, before);
    QFETCH(QString, after);
    const TextDiff diff = textDiff(before, after);
    QTEST(diff.description(), "description");
    QTEST(written(diff), "lines");
  }

  /// Whatever is shown, the lines that stay and go are the old text, those that stay and come the new one.
  void leadsFromOneTextToTheOther() {
    std::mt19937 random(7);
    for (int round = 0; round < 500; ++round) {
      const QString before = randomText(random);
      const QString after = randomText(random);
      const TextDiff diff = textDiff(before, after);
      QCOMPARE(diff.added - diff.removed, after.count(u'\n') - before.count(u'\n'));
      QString old;
      QString fresh;
      bool isWhole = true;
      for (const DiffLine& line : diff.lines) {
        isWhole = isWhole && line.kind != Kind::omission;
        if (line.kind != Kind::added) old += line.text + u'\n';
        if (line.kind != Kind::removed) fresh += line.text + u'\n';
      }
      if (!isWhole || diff.lines.empty()) continue;
      QVERIFY2(before.contains(old) && after.contains(fresh), qPrintable(before + u"->"_s + after));
    }
  }

  /// A megabyte of line ends against a long template: the table for both would take 100 GB.
  void hugeTextsTakeNoLongerThanTheirLines() {
    const TextDiff diff = textDiff(QString(1 << 20, u'\n'), numbers(0, 30'000));
    QCOMPARE(diff.added, 30'000);
    QCOMPARE(diff.removed, 1 << 20);
    QCOMPARE(diff.lines.size(), std::size_t(501));
    QCOMPARE(diff.lines.back(), (DiffLine{Kind::omission, u"1078076 lines more"_s}));
    QCOMPARE(textDiff(numbers(0, 100'000), numbers(0, 100'001)).description(), u"adds 1 line"_s);
  }
};

QTEST_GUILESS_MAIN(TestTextDiff)
#include "test_text_diff.moc"
