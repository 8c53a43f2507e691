#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include "app/updates/whats_new_window.h"
#include "platform/updater.h"
#include "support/controls.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kChangelog = u"## 0.3.0\n### Fixed\n- Third\n## 0.2.0\n### Added\n- Second\n## 0.1.0\n- First\n";

struct Stage {
  QTemporaryDir directory;
  QSettings defaults{directory.filePath(u"defaults.ini"_s), QSettings::IniFormat};
  UpdateNotice notice{defaults, u"0.3.0"_s};
  Updater updater;
  WhatsNewWindow window{notice, updater, Changelog::parse(kChangelog)};
};

}  // namespace

class TestWhatsNewWindow : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void anUpdateShowsWhatCameSinceAndLaterOpeningsAll() {
    Stage stage;
    stage.defaults.setValue(u"updates.lastVersion"_s, u"0.1.0"_s);
    QVERIFY(stage.notice.prepare(false));
    stage.window.open();
    QVERIFY(QTest::qWaitForWindowExposed(&stage.window));
    const QString announced = shownTexts(stage.window).join(u'\n');
    QVERIFY(announced.contains(u"Vantle 0.3.0 is installed"_s) && announced.contains(u"You had 0.1.0 before."_s));
    QVERIFY(announced.indexOf(u"Third"_s) < announced.indexOf(u"Second"_s) && !announced.contains(u"First"_s));
    QVERIFY(announced.contains(u"Updates come with your package manager."_s));

    stage.window.open();
    QVERIFY(shownTexts(stage.window).join(u'\n').contains(u"First"_s));
  }

  void whatShipsIsInTheProgram() { QVERIFY(!WhatsNewWindow::shippedChangelog().upTo(u"0.1.0"_s).empty()); }
};

QTEST_MAIN(TestWhatsNewWindow)
#include "test_whats_new_window.moc"
