#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include "app/updates/changelog.h"
#include "app/updates/update_notice.h"
#include "support/files.h"

using namespace Qt::StringLiterals;

namespace {

QStringList names(const std::vector<Changelog::Version>& versions) {
  QStringList all;
  for (const Changelog::Version& version : versions) all.append(version.name);
  return all;
}

const QString kChangelog =
    uR"(# Changelog

Words for whoever reads the file.

## [Unreleased]
### Added
- Not for everybody yet

## 0.9.0 — 2026-02-01
- Older, and without a group

## [0.10.0] - 2026-03-02
Faster
everywhere.

### Fixed
- One thing that
  takes **two** lines, with `code`
  and [a link](https://example.org)
* Another

Not an entry any more.
### Changed

## [0.10.0] - 2026-03-03
- The same version again

## nonsense
- Of no version

## [0.8.0] - 2026-13-45
### Added
- A date that is none
<!-- a comment -->
[0.8.0]: https://example.org
)"_s;

}  // namespace

class TestUpdates : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void readsVersionsGroupsAndEntries() {
    const auto versions = Changelog::parse(kChangelog).upTo(u"0.10.0"_s);
    QCOMPARE(names(versions), (QStringList{u"0.10.0"_s, u"0.9.0"_s, u"0.8.0"_s}));
    const Changelog::Version& newest = versions.front();
    QCOMPARE(newest.date, QDate(2026, 3, 2));
    QCOMPARE(newest.summary, u"Faster everywhere."_s);
    QCOMPARE(newest.groups.size(), std::size_t{1});
    QCOMPARE(newest.groups.front().title, u"Fixed"_s);
    QCOMPARE(newest.groups.front().entries,
             (QStringList{u"One thing that takes two lines, with code and a link"_s, u"Another"_s}));
    QCOMPARE(versions.at(1).date, QDate(2026, 2, 1));
    QVERIFY(versions.at(1).groups.front().title.isEmpty());
    QVERIFY(versions.at(2).date.isNull());
    QCOMPARE(versions.at(2).groups.front().entries, QStringList{u"A date that is none"_s});
  }

  void whatIsNotReleasedIsSeenByNobodyElse() {
    const Changelog changelog = Changelog::parse(kChangelog);
    QCOMPARE(names(changelog.upTo(u"0.9.0"_s)), (QStringList{u"0.9.0"_s, u"0.8.0"_s}));
    QCOMPARE(names(changelog.since(u"0.10.0"_s, u"0.11.0"_s)), QStringList{u"0.11.0"_s});
    QCOMPARE(changelog.since(u"0.10.0"_s, u"0.11.0"_s).front().groups.front().entries.size(), 1);
  }

  void announcesWhatCameSince_data() {
    QTest::addColumn<QString>("earlier");
    QTest::addColumn<QString>("running");
    QTest::addColumn<QStringList>("shown");
    QTest::newRow("one version") << u"0.9.0"_s << u"0.10.0"_s << QStringList{u"0.10.0"_s};
    QTest::newRow("two versions") << u"0.8.0"_s << u"0.10.0"_s << QStringList{u"0.10.0"_s, u"0.9.0"_s};
    QTest::newRow("a version nobody wrote about") << u"0.7.9"_s << u"0.8.0"_s << QStringList{u"0.8.0"_s};
    QTest::newRow("back to an older one") << u"0.10.0"_s << u"0.9.0"_s << QStringList{u"0.9.0"_s};
    QTest::newRow("from nonsense") << u"\0?"_s << u"0.9.0"_s << QStringList{u"0.9.0"_s};
    QTest::newRow("back to one without a section") << u"0.10.0"_s << u"0.1.0"_s << QStringList{u"0.1.0"_s};
  }
  void announcesWhatCameSince() {
    QFETCH(QString, earlier);
    QFETCH(QString, running);
    QTEST(names(Changelog::parse(kChangelog).since(earlier, running)), "shown");
  }

  void survivesAnyText() {
    for (const QString& text : {QString(), u"## "_s, u"###\n- x\n"_s, u"- entry\n## [\n## ]\n"_s,
                                u"## 1.0.0\n### Added\n"_s, QString(300'000, u'#'), u"## 1.0.0 - \r\n"_s})
      QVERIFY(names(Changelog::parse(text).upTo(u"9.0.0"_s)).isEmpty());
  }

  void thisVersionHasASection() {
    const auto versions =
        Changelog::parse(QString::fromUtf8(readFile(QStringLiteral(CHANGELOG)))).upTo(QStringLiteral(VANTLE_VERSION));
    QVERIFY(!versions.empty());
    QCOMPARE(versions.front().name, QStringLiteral(VANTLE_VERSION));
    QVERIFY(versions.front().date.isValid() && !versions.front().groups.empty());
  }

  void eachVersionIsAnnouncedOnce() {
    const QTemporaryDir directory;
    QSettings defaults(directory.filePath(u"defaults.ini"_s), QSettings::IniFormat);
    QVERIFY(!UpdateNotice(defaults, u"0.1.0"_s).prepare(false));
    UpdateNotice busy(defaults, u"0.2.0"_s);
    QVERIFY(!busy.prepare(true) && !busy.takeEarlier());
    UpdateNotice next(defaults, u"0.2.0"_s);
    QVERIFY(next.prepare(false));
    QCOMPARE(next.takeEarlier(), u"0.1.0"_s);
    QVERIFY(!next.takeEarlier());
    QVERIFY(!UpdateNotice(defaults, u"0.2.0"_s).prepare(false));
  }
};

QTEST_GUILESS_MAIN(TestUpdates)
#include "test_updates.moc"
