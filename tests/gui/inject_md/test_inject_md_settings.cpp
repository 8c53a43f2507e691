#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <ranges>

#include "core/ui/settings_form.h"
#include "support/controls.h"
#include "support/wear_theme.h"
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
  QTemporaryDir directory;
  InjectMDStore store{directory.filePath(u"inject-md.json"_s)};
  SettingsPage page;
};

}  // namespace

class TestInjectMDSettings : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { wearTheme(); }

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
    stage.press(u"SOUL.md: Make default"_s);
    QCOMPARE(stage.store.value().defaultDocument().fileName, u"SOUL.md"_s);
    QCOMPARE(unnamedControls(stage.page), QStringList());
    stage.press(u"SOUL.md: Remove"_s);
    QCOMPARE(stage.fileNames(), QStringList(u"AGENTS.md"_s));
    QCOMPARE(stage.editor().accessibleName(), u"Template of AGENTS.md"_s);
  }

  /// A second press of the same key must not hit what does harm.
  void focusStaysWhereItIsSafe() {
    Stage stage;
    stage.add(u"SOUL.md"_s);
    stage.add(u"NOTES.md"_s);
    const auto pressKey = [&stage](const QString& name) {
      auto* button = named<QPushButton>(stage.page, name);
      button->setFocus();
      QTest::keyClick(button, Qt::Key_Space);
    };
    const auto focused = [] {
      return QApplication::focusWidget() ? QApplication::focusWidget()->accessibleName() : u""_s;
    };
    pressKey(u"SOUL.md: Make default"_s);
    QCOMPARE(focused(), u"SOUL.md: Edit"_s);
    pressKey(u"SOUL.md: Remove"_s);
    QCOMPARE(focused(), u"NOTES.md: Edit"_s);
    pressKey(u"NOTES.md: Remove"_s);
    QCOMPARE(focused(), u"AGENTS.md: Edit"_s);
    QCOMPARE(stage.fileNames(), QStringList(u"AGENTS.md"_s));
    stage.editor().setFocus();
    QTest::keyClicks(&stage.editor(), u"x"_s);
    QTRY_VERIFY(named<QPushButton>(stage.page, u"Reset AGENTS.md to default"_s)->isEnabled());
    pressKey(u"Reset AGENTS.md to default"_s);
    QVERIFY(stage.editor().hasFocus());
    stage.editor().undo();
    QVERIFY2(stage.editor().toPlainText().startsWith("x# "_L1), "what was reset can be taken back");
    QTRY_VERIFY(stage.store.value().documents[0].contents.startsWith("x# "_L1));
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
