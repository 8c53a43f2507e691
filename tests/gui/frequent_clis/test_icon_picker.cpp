#include <QAbstractItemModelTester>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include "core/ui/palette_list.h"
#include "tools/frequent_clis/icon_picker_grid.h"
#include "tools/frequent_clis/icon_picker_model.h"

using namespace Qt::StringLiterals;

class IconPickerTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    window_.resize(300, 300);
    window_.show();
    picked_.clear();
    picker_ = new IconPickerGrid(u"cohere"_s, &window_);
    connect(picker_, &IconPickerGrid::picked, this, [this](const QString& id) { picked_ = id; });
    picker_->popupAt(window_);
  }
  void cleanup() { delete picker_; }

  void searchLooksIntoNamesAndIds() {
    IconPickerModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(model.rowCount(), 57);
    const auto names = [&](const QString& query) {
      model.setQuery(query);
      QStringList found;
      for (int row = 0; row < model.rowCount(); ++row) found.append(model.index(row).data().toString());
      return found;
    };
    QCOMPARE(names(u"FACE"_s), QStringList(u"Hugging Face"_s));
    QCOMPARE(names(u"lmstudio"_s), QStringList(u"LM Studio"_s));
    QCOMPARE(names(u" claude "_s), QStringList(u"Claude"_s));
    QCOMPARE(names(u"terminal"_s), QStringList());
    QCOMPARE(model.emptyText(), u"No icons match “terminal”"_s);
  }

  void opensOnTheCurrentIcon() {
    QCOMPARE(current(), u"cohere"_s);
    QVERIFY(grid().viewport()->rect().intersects(grid().visualRect(grid().currentIndex())));
    QVERIFY(search().hasFocus());
  }

  void noMatchNamesTheQuery() {
    QTest::keyClicks(&search(), u"<b>x"_s);
    const auto* empty = picker_->findChild<QLabel*>();
    QVERIFY(empty->isVisible());
    QCOMPARE(empty->text(), u"No icons match “<b>x”"_s);
    QTest::keyClick(&search(), Qt::Key_Down);
    QTest::keyClick(&search(), Qt::Key_Return);
    QVERIFY(picker_->isVisible());
    search().clear();
    QVERIFY(grid().isVisible());
  }

  void arrowsWalkTheGridAndLettersGoOnSearching() {
    search().setText(u"a"_s);
    QCOMPARE(current(), u"claude"_s);
    QTest::keyClick(&search(), Qt::Key_Down);
    QVERIFY(grid().hasFocus());
    QTest::keyClick(&grid(), Qt::Key_Right);
    QTest::keyClick(&grid(), Qt::Key_Down);
    // Five to a row: one to the right and one down is the seventh.
    QCOMPARE(grid().currentIndex().row(), 6);
    QTest::keyClick(&grid(), Qt::Key_Up);
    QTest::keyClick(&grid(), Qt::Key_Up);
    QVERIFY(search().hasFocus());
    QTest::keyClick(&search(), Qt::Key_Down);
    QTest::keyClick(&grid(), Qt::Key_W);
    QCOMPARE(search().text(), u"aw"_s);
    QTest::keyClick(&search(), Qt::Key_Down);
    QTest::keyClick(&grid(), Qt::Key_Return);
    QCOMPARE(picked_, u"aws"_s);
  }

  void clickPicks() {
    const QModelIndex second = grid().model()->index(1, 0);
    grid().scrollTo(second);
    QTest::mouseClick(grid().viewport(), Qt::LeftButton, {}, grid().visualRect(second).center());
    QCOMPARE(picked_, u"codex"_s);
  }

  void escapePicksNothing() {
    QTest::keyClick(&search(), Qt::Key_Escape);
    QTRY_VERIFY(!picker_);
    QCOMPARE(picked_, QString());
  }

 private:
  QLineEdit& search() { return *picker_->findChild<QLineEdit*>(); }
  PaletteList& grid() { return *picker_->findChild<PaletteList*>(); }
  QString current() { return grid().currentIndex().data(IconPickerModel::IdRole).toString(); }

  QWidget window_;
  QPointer<IconPickerGrid> picker_;
  QString picked_;
};

QTEST_MAIN(IconPickerTest)
#include "test_icon_picker.moc"
