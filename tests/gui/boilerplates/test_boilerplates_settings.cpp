#include <QAccessible>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include "core/ui/control_style.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"
#include "core/ui/theme_palette.h"
#include "support/controls.h"
#include "tools/boilerplates/boilerplates_settings_view.h"

using namespace Qt::StringLiterals;

namespace {

struct Stage {
  Stage() {
    page.resize(560, 640);
    page.addWidget(new BoilerplatesSettingsView(store));
    page.show();
    page.activateWindow();
    if (!QTest::qWaitForWindowActive(&page)) qFatal("the page is not active");
  }
  void add(const QString& path) {
    store.update([&path](BoilerplateSettings& settings) { settings.add(path); });
    showRows();
  }
  /// New rows are shown with the next event.
  static void showRows() { QCoreApplication::processEvents(); }
  QStringList names() const {
    QStringList names;
    for (const Boilerplate& boilerplate : store.value().templates) names.append(boilerplate.name);
    return names;
  }
  QLineEdit* nameOf(const QString& name) { return named<QLineEdit>(page, u"Name of %1"_s.arg(name)); }
  void press(const QString& name) {
    for (QPushButton* button : page.findChildren<QPushButton*>())
      if (button->isVisible() && (button->text() == name || button->accessibleName().startsWith(name)))
        return QTest::mouseClick(button, Qt::LeftButton);
    QFAIL(qPrintable(name));
  }

  QTemporaryDir directory;
  BoilerplateStore store{directory.filePath(u"boilerplates.json"_s)};
  SettingsPage page;
};

}  // namespace

class TestBoilerplatesSettings : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    QApplication::setStyle(new ControlStyle);
    QApplication::setFont(Theme::detailFont());
    QApplication::setPalette(themePalette(Theme::light()));
  }

  void aFolderIsChosenRenamedAndRemoved() {
    Stage stage;
    QVERIFY(!named<QLineEdit>(stage.page, u"Name of"_s));
    QDir(stage.directory.path()).mkpath(u"web"_s);
    stage.press(u"Add Folder…"_s);
    auto* dialog = stage.page.findChild<QFileDialog*>();
    QVERIFY(dialog && dialog->isVisible());
    Q_EMIT dialog->fileSelected(stage.directory.filePath(u"web"_s));
    dialog->close();
    Stage::showRows();
    QCOMPARE(stage.names(), QStringList(u"web"_s));
    auto* name = stage.nameOf(u"web"_s);
    QVERIFY(name);
    name->selectAll();
    QTest::keyClicks(name, u"Web page"_s);
    QTest::keyClick(name, Qt::Key_Return);
    QCOMPARE(stage.names(), QStringList(u"Web page"_s));
    QCOMPARE(unnamedControls(stage.page), QStringList());
    stage.press(u"Remove Web page"_s);
    QCOMPARE(stage.names(), QStringList());
    QVERIFY(QFileInfo::exists(stage.directory.filePath(u"web"_s)));
  }

  void aBlankNameIsTakenBack() {
    Stage stage;
    stage.add(u"/srv/web"_s);
    auto* name = stage.nameOf(u"web"_s);
    name->setText(u"  "_s);
    QTest::keyClick(name, Qt::Key_Return);
    QCOMPARE(stage.names(), QStringList(u"web"_s));
    QCOMPARE(name->text(), u"web"_s);
  }

  void theLastPlaceTakesNoFieldFromTheUser() {
    Stage stage;
    stage.add(u"/srv/web"_s);
    QTest::keyClicks(stage.nameOf(u"web"_s), u"x"_s);
    stage.store.update([](BoilerplateSettings& settings) { settings.lastPlace = u"/srv"_s; });
    QCOMPARE(stage.nameOf(u"web"_s)->text(), u"webx"_s);
  }
};

QTEST_MAIN(TestBoilerplatesSettings)
#include "test_boilerplates_settings.moc"
