#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include "core/ui/control_style.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"
#include "core/ui/theme_palette.h"
#include "support/controls.h"
#include "tools/inject_md/inject_md_settings_view.h"
#include "tools/inject_md/well_known_templates.h"

using namespace Qt::StringLiterals;

namespace {

struct Stage {
  Stage() {
    page.resize(560, 640);
    page.addWidget(new InjectMDSettingsView(store));
    page.show();
    page.activateWindow();
    if (!QTest::qWaitForWindowActive(&page)) qFatal("the page is not active");
  }
  void press(const QString& name) {
    auto* button = named<QPushButton>(page, name);
    QVERIFY2(button && button->isEnabled(), qPrintable(name));
    QTest::mouseClick(button, Qt::LeftButton);
  }
  void add(const QString& name) {
    auto* field = named<QLineEdit>(page, u"Name of the file to add"_s);
    field->clear();
    QTest::keyClicks(field, name);
    QTest::keyClick(field, Qt::Key_Return);
  }
  bool says(const QString& text) const {
    for (const RowRemark* remark : page.findChildren<RowRemark*>())
      if (remark->isVisible() && remark->text() == text) return true;
    return false;
  }
  QPlainTextEdit& editor() { return *named<QPlainTextEdit>(page, u"Template of"_s); }
  QStringList fileNames() const {
    QStringList names;
    for (const MDDocument& document : store.value().documents) names.append(document.fileName);
    return names;
  }
  /// With VANTLE_SHOTS a folder for pictures, in both appearances.
  void shoot(const QString& name) {
    const QString folder = qEnvironmentVariable("VANTLE_SHOTS");
    if (folder.isEmpty()) return;
    for (const Theme* theme : {&Theme::darkTheme(), &Theme::light()}) {
      QApplication::setPalette(themePalette(*theme));
      QCoreApplication::processEvents();
      QVERIFY(page.grab().save(u"%1/%2-%3.png"_s.arg(folder, name, theme->dark ? u"dark"_s : u"light"_s)));
    }
  }

  QTemporaryDir directory;
  InjectMDStore store{directory.filePath(u"inject-md.json"_s)};
  SettingsPage page;
};

}  // namespace

class TestInjectMDSettings : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    QApplication::setStyle(new ControlStyle);
    QApplication::setFont(Theme::detailFont());
    QApplication::setPalette(themePalette(Theme::light()));
  }

  void filesAreAddedAndRemoved() {
    Stage stage;
    QVERIFY(!named<QPushButton>(stage.page, u"AGENTS.md: Remove"_s)->isEnabled());
    stage.add(u"SOUL.md"_s);
    QCOMPARE(stage.fileNames(), QStringList({u"AGENTS.md"_s, u"SOUL.md"_s}));
    QCOMPARE(stage.editor().toPlainText(), wellKnownTemplate(u"SOUL.md"_s));
    QVERIFY(stage.editor().hasFocus());
    stage.add(u"a/b"_s);
    QVERIFY(stage.says(u"The file name has a slash in it."_s));
    QCOMPARE(stage.fileNames().size(), 2);
    stage.shoot(u"refused"_s);
    stage.press(u"SOUL.md: Make default"_s);
    QCOMPARE(stage.store.value().defaultDocument().fileName, u"SOUL.md"_s);
    stage.shoot(u"two"_s);
    QCOMPARE(unnamedControls(stage.page), QStringList());
    stage.press(u"SOUL.md: Remove"_s);
    QCOMPARE(stage.fileNames(), QStringList(u"AGENTS.md"_s));
    QCOMPARE(stage.editor().accessibleName(), u"Template of AGENTS.md"_s);
  }

  void tabLeadsFromTheFilesToTheTemplate() {
    Stage stage;
    stage.add(u"SOUL.md"_s);
    named<QLineEdit>(stage.page, u"Name of the file to add"_s)->setFocus();
    for (const QString& next : {u"Add the file"_s, u"Template of SOUL.md"_s}) {
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
      QCOMPARE(QApplication::focusWidget()->accessibleName(), next);
    }
  }

  void templatesAreEditedAndReset() {
    Stage stage;
    stage.add(u"NOTES.md"_s);
    QVERIFY(!named<QPushButton>(stage.page, u"Reset NOTES.md"_s));
    stage.editor().setFocus();
    stage.editor().moveCursor(QTextCursor::End);
    QTest::keyClicks(&stage.editor(), u"mine"_s);
    QTRY_COMPARE(stage.store.value().documents[1].contents, u"# NOTES.md\nmine"_s);
    stage.press(u"AGENTS.md: Edit"_s);
    QTest::keyClicks(&stage.editor(), u"x"_s);
    // Taken over at once when the editor is left.
    stage.press(u"NOTES.md: Edit"_s);
    QVERIFY(stage.store.value().documents[0].contents.startsWith("x# AGENTS.md"_L1));
    stage.press(u"AGENTS.md: Edit"_s);
    stage.press(u"Reset AGENTS.md to default"_s);
    QCOMPARE(stage.editor().toPlainText(), wellKnownTemplate(u"AGENTS.md"_s));
    QCOMPARE(stage.store.value().documents[0].contents, wellKnownTemplate(u"AGENTS.md"_s));
  }

  void anUntouchedTemplateStaysByteForByte() {
    QTemporaryDir directory;
    InjectMDStore store(directory.filePath(u"inject-md.json"_s));
    const QString odd = u"a\r\nb\u00a0c\u2028d"_s;
    store.update([&odd](InjectMDSettings& settings) { settings.setContents(settings.defaultDocumentID, odd); });
    {
      InjectMDSettingsView view(store);
      view.show();
      view.hide();
    }
    QCOMPARE(store.value().defaultDocument().contents, odd);
  }
};

QTEST_MAIN(TestInjectMDSettings)
#include "test_inject_md_settings.moc"
