#include <QTest>

#include "core/tools/tool_disclosure.h"
#include "support/fake_platform.h"

using namespace Qt::StringLiterals;

class TestToolDisclosure : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void everyToolSaysWhatItSendsWhenAndWhereTo() {
    const FakeSystem system;
    for (const ToolInfo& tool : toolTable()) {
      const QString text = disclosure(tool, system);
      QCOMPARE(sendsAnything(tool), tool.requiresNetwork);
      QVERIFY2(!text.contains(u'%'), qPrintable(text));
      if (!tool.requiresNetwork) {
        QCOMPARE(text, u"Stays on this computer."_s);
        continue;
      }
      QVERIFY2(text.startsWith(u"Sends "_s) && text.contains(u" when you "_s), qPrintable(text));
      QVERIFY2(text.contains(u"to the link service"_s) != text.contains(u"to the API service"_s), qPrintable(text));
    }
  }
};

QTEST_GUILESS_MAIN(TestToolDisclosure)
#include "test_tool_disclosure.moc"
