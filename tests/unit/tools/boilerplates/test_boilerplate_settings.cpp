#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>

#include "support/files.h"
#include "tools/boilerplates/boilerplate_settings.h"
#include "tools/boilerplates/project_name.h"

using namespace Qt::StringLiterals;

class TestBoilerplateSettings : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void keepsWhatTheUserHasListed() {
    const QTemporaryDir home;
    const QString file = home.filePath(u"boilerplates.json"_s);
    QUuid web;
    {
      BoilerplateStore store(file);
      store.update([&](BoilerplateSettings& settings) {
        web = settings.add(u"/t/web/"_s);
        QCOMPARE(settings.add(u"/t/x/../web"_s), web);
        settings.remove(settings.add(u"/t/gone"_s));
        settings.add(u"/t/tool"_s);
        settings.rename(web, u" Web page "_s);
        settings.rename(web, u"  "_s);
        settings.lastPlace = u"/w"_s;
      });
    }
    const BoilerplateStore again(file);
    QCOMPARE(again.value().templates.size(), 2U);
    QCOMPARE(again.value().templates.front(), (Boilerplate{web, u"Web page"_s, u"/t/web"_s}));
    QCOMPARE(again.value().lastPlace, u"/w"_s);
    QCOMPARE(again.value().find(u"TOOL"_s)->path, u"/t/tool"_s);
    QVERIFY(!again.value().find(u"gone"_s));
  }

  void damagedEntriesAreLeftOutAndTheFileIsKept() {
    const QTemporaryDir home;
    const QString file = home.filePath(u"boilerplates.json"_s);
    const QByteArray id = QUuid::createUuid().toByteArray(QUuid::WithoutBraces);
    QByteArray damaged =
        "{'templates':[{'id':'#','name':'A','path':'/a'},{'id':'#','name':'B','path':'/b'},"
        "{'id':'#','name':'C','path':'relative'},{'name':'D','path':'/d'},7],'lastPlace':3}";
    damaged.replace('\'', '"').replace('#', id);
    QVERIFY(writeFile(file, damaged));
    BoilerplateStore store(file);
    QCOMPARE(store.value().templates.size(), 2U);
    QVERIFY(store.value().templates[0].id != store.value().templates[1].id);
    store.update([](BoilerplateSettings& settings) { settings.lastPlace = u"/w"_s; });
    bool isKept = false;
    for (const QFileInfo& other : QDir(home.path()).entryInfoList(QDir::Files | QDir::Hidden))
      isKept = isKept || readFile(other.filePath()) == damaged;
    QVERIFY(isKept);
  }

  void refusesNamesThatAreNoFolderNames() {
    const QStringList refused = {u""_s,
                                 u" "_s,
                                 u"."_s,
                                 u".."_s,
                                 u"a/b"_s,
                                 u"a\nb"_s,
                                 u"\t"_s,
                                 u"a\u0085b"_s,
                                 u"a\u2028b"_s,
                                 QString(QChar(0xD800)),
                                 u" a"_s,
                                 u"a "_s,
                                 QString(256, u'a'),
                                 QString(128, u'ü')};
    for (const QString& name : refused) QVERIFY2(!projectNameProblem(name).isEmpty(), qPrintable(name));
    for (const QString& name : {u"shop"_s, u".dot"_s, u"..."_s, u"Größe 2 – it's"_s, u"{{name}}"_s, QString(255, u'a')})
      QVERIFY2(projectNameProblem(name).isEmpty(), qPrintable(name));
  }
};

QTEST_GUILESS_MAIN(TestBoilerplateSettings)
#include "test_boilerplate_settings.moc"
