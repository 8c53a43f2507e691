#include <QTest>

#include <array>

#include "services/answer_text.h"

using namespace Qt::StringLiterals;

class TestAnswerText : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void findsTheFirstTextThatSaysSomething_data() {
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("text");
    const auto row = [](const char* name, QByteArray body, const QString& text) {
      QTest::newRow(name) << body.replace('\'', '"') << text;
    };
    row("in order", "{'result':'b','text':'a'}", u"a"_s);
    row("empty and wrong ones are passed over", "{'text':'','result':7,'output':' c '}", u" c "_s);
    row("in data", "{'text':'','data':{'text':'d'}}", u"d"_s);
    row("only the named one of data", "{'data':{'result':'d'}}", {});
    row("an object without any", "{'error':'no'}", {});
    row("a list", "['a']", {});
    row("no JSON", "\n plain {text}\n", u"plain {text}"_s);
    row("a bare number is an answer too", "42", u"42"_s);
    row("blank", " \r\n", {});
    row("not UTF-8", "\xff\xfe", {});
  }
  void findsTheFirstTextThatSaysSomething() {
    QFETCH(QByteArray, body);
    QFETCH(QString, text);
    constexpr std::array kMembers = {"text"_L1, "result"_L1, "output"_L1};
    QCOMPARE(textIn(body, kMembers, "text"_L1).value_or(QString()), text);
  }
};

QTEST_GUILESS_MAIN(TestAnswerText)
#include "test_answer_text.moc"
