#include <QProcess>
#include <QTest>

#include "base/shell_words.h"

using namespace Qt::StringLiterals;

class TestShellWords : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  /// As `sh` itself does, where nothing is to be expanded.
  void splitsAsAShellDoes() {
    for (const QString& line :
         {u"agent"_s, u"  agent  -p\tx "_s, u"'an agent' -p \"a b\""_s, u"a\\ b c\\'d"_s, u"a'b c'\"d e\"f"_s,
          u"'' \"\""_s, u"\"a\\\"b\\\\c\\d\" 'e\\f'"_s, u"--a='b' ö\"ü\""_s}) {
      QProcess shell;
      shell.start(u"sh"_s, {u"-c"_s, u"printf '%s\\0' "_s + line});
      QVERIFY(shell.waitForFinished());
      QStringList expected = QString::fromUtf8(shell.readAllStandardOutput()).split(QChar::Null);
      expected.removeLast();
      const auto words = shellWords(line);
      QVERIFY2(words, qPrintable(line));
      QCOMPARE(*words, expected);
    }
    QCOMPARE(shellWords(u" \n "_s).value(), QStringList());
    QCOMPARE(shellWords(u"a; b $HOME | `c`"_s).value(), (QStringList{u"a;"_s, u"b"_s, u"$HOME"_s, u"|"_s, u"`c`"_s}));
  }

  void aQuoteThatDoesNotEndIsNoLine() {
    for (const QString& line : {u"a 'b"_s, u"\"a"_s, u"a\\"_s, u"'a\"b"_s}) QVERIFY(!shellWords(line));
  }
};

QTEST_GUILESS_MAIN(TestShellWords)
#include "test_shell_words.moc"
