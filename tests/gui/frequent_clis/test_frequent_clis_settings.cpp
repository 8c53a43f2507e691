#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

#include "core/ui/toggle_switch.h"
#include "support/fake_clock.h"
#include "tools/frequent_clis/command_list_editor.h"
#include "tools/frequent_clis/command_row_editor.h"
#include "tools/frequent_clis/command_store.h"
#include "tools/frequent_clis/focused_command.h"
#include "tools/frequent_clis/frequent_clis_settings_view.h"
#include "tools/frequent_clis/icon_picker_grid.h"
#include "tools/frequent_clis/tile_button.h"

using namespace Qt::StringLiterals;

class FrequentCLIsSettingsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() { page_ = std::make_unique<Page>(); }

  void typingEditsTheCommand() {
    page_->open();
    page_->title(1).setCursorPosition(1);
    QTest::keyClicks(&page_->title(1), u"st"_s);
    page_->title(1).setCursorPosition(1);
    QTest::keyClicks(&page_->title(1), u"fir"_s);
    QCOMPARE(page_->store.commands()[1].title, u"1first"_s);
    QCOMPARE(page_->title(1).cursorPosition(), 4);
    page_->command(1).end(false);
    QTest::keyClicks(&page_->command(1), u" -la"_s);
    QCOMPARE(page_->store.commands()[1].command, u"ls -la"_s);
    QCOMPARE(page_->order(), u"01first234"_s);
  }

  void editingOneFieldKeepsTheOtherWhole() {
    auto commands = page_->store.commands();
    const QString long_ = u"git status\n\u001b\t"_s + QString(50'000, u'x');
    commands[0].command = long_;
    page_->store.setCommands(commands);
    page_->open();
    QTest::keyClicks(&page_->title(0), u"a"_s);
    QCOMPARE(page_->store.commands()[0].command, long_);
    page_->command(0).end(false);
    QTest::keyClicks(&page_->command(0), u"y"_s);
    QCOMPARE(page_->store.commands()[0].command, long_ + u'y');
  }

  void tileFollowsTheTextUntilAnIconIsPicked() {
    const QUuid id = page_->store.add();
    page_->open();
    auto& tile = page_->part<TileButton>(5);
    QCOMPARE(tile.accessibleName(), u"Icon: Terminal"_s);
    QTest::keyClicks(&page_->command(5), u"codex"_s);
    QCOMPARE(tile.accessibleName(), u"Icon: Codex"_s);
    QVERIFY(!page_->store.find(id)->icon);

    QTest::mouseClick(&tile, Qt::LeftButton);
    auto* picker = page_->row(5).findChild<IconPickerGrid*>();
    QVERIFY(picker->isVisible());
    QTest::keyClicks(picker->findChild<QLineEdit*>(), u"kimi"_s);
    QTest::keyClick(picker->findChild<QLineEdit*>(), Qt::Key_Return);
    QCOMPARE(page_->store.find(id)->icon, u"kimi"_s);
    QCOMPARE(tile.accessibleName(), u"Icon: Kimi"_s);
  }

  void switchShowsWhatItDoes() {
    page_->open();
    auto& toggle = page_->part<ToggleSwitch>(2);
    const auto& caption = page_->part<QLabel>(2);
    QCOMPARE(toggle.accessibleName(), u"Press Return after inserting (insert-and-run)"_s);
    QCOMPARE(caption.text(), toggle.accessibleName());
    QTest::mouseClick(&toggle, Qt::LeftButton);
    QVERIFY(page_->store.commands()[2].pressReturn);
    QCOMPARE(caption.text(), u"Presses Return after inserting"_s);
    QTest::keyClick(&toggle, Qt::Key_Space);
    QVERIFY(!page_->store.commands()[2].pressReturn);
  }

  void addedCommandIsReadyToBeNamed() {
    page_->open();
    QTest::mouseClick(&page_->button(0), Qt::LeftButton);
    QCOMPARE(page_->store.commands().size(), 6U);
    QTRY_VERIFY(page_->title(5).hasFocus());
    QTest::keyClicks(&page_->title(5), u"5"_s);
    QCOMPARE(page_->order(), u"012345"_s);
    const QRect row(page_->row(5).mapTo(page_->window.viewport(), QPoint()), page_->row(5).size());
    QVERIFY(page_->window.viewport()->rect().contains(row));
  }

  void removeNeedsASelectionAndKeepsOne() {
    page_->open();
    auto& remove = page_->button(1);
    page_->list().select(std::nullopt);
    QVERIFY(!remove.isEnabled());
    page_->title(3).setFocus();
    QVERIFY(remove.isEnabled());
    QTest::mouseClick(&remove, Qt::LeftButton);
    QCOMPARE(page_->order(), u"0124"_s);
    QCOMPARE(page_->list().selected(), page_->id(3));
    for (int left = 4; left > 0; --left) QTest::mouseClick(&remove, Qt::LeftButton);
    QCOMPARE(page_->order(), QString());
    QVERIFY(!remove.isEnabled());
  }

  void handedOverCommandIsFocusedAndScrolledTo() {
    page_->focused.set(page_->id(4));
    page_->open();
    QTRY_VERIFY(page_->title(4).hasFocus());
    QCOMPARE(page_->list().selected(), page_->id(4));
    QVERIFY(page_->window.viewport()->rect().contains(page_->title(4).mapTo(page_->window.viewport(), QPoint(5, 5))));

    page_->focused.set(page_->id(0));
    QTRY_VERIFY(page_->title(0).hasFocus());
    page_->focused.set(QUuid::createUuid());
    QCOMPARE(page_->list().selected(), page_->id(0));
  }

  void draggingReorders() {
    page_->open();
    auto& first = page_->row(0);
    drag(first, 3);
    QCOMPARE(page_->order(), u"01234"_s);
    QTest::mouseRelease(&first, Qt::LeftButton);
    QCOMPARE(page_->order(), u"12304"_s);
    QCOMPARE(page_->list().selected(), page_->id(3));
    for (std::size_t index = 1; index < 5; ++index) QVERIFY(page_->row(index - 1).y() < page_->row(index).y());

    drag(page_->row(4), -9);
    QTest::mouseRelease(&page_->row(4), Qt::LeftButton);
    QCOMPARE(page_->order(), u"41230"_s);
  }

  void escapeEndsADrag() {
    page_->open();
    auto& first = page_->row(0);
    drag(first, 2);
    QTest::keyClick(&page_->list(), Qt::Key_Escape);
    QTest::mouseRelease(&first, Qt::LeftButton);
    QCOMPARE(page_->order(), u"01234"_s);
    QVERIFY(page_->row(0).y() < page_->row(1).y());
  }

  void arrowsSelectAndOptionArrowsReorder() {
    page_->open();
    page_->command(1).setFocus();
    QTest::keyClick(&page_->command(1), Qt::Key_Down);
    QVERIFY(page_->command(2).hasFocus());
    QCOMPARE(page_->list().selected(), page_->id(2));
    QTest::keyClick(&page_->command(2), Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(page_->order(), u"01324"_s);
    QVERIFY(page_->command(3).hasFocus());
    // At the top it stays.
    for (int press = 0; press < 5; ++press) QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(page_->order(), u"20134"_s);
    QVERIFY(page_->command(0).hasFocus());
  }

  void tabOrderFollowsTheRows() {
    page_->open();
    page_->store.move(page_->id(4), 0);
    page_->title(0).setFocus();
    const auto tab = [] { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab); };
    tab();
    QVERIFY(page_->command(0).hasFocus());
    tab();
    QVERIFY(page_->part<ToggleSwitch>(0).hasFocus());
    tab();
    QVERIFY(page_->part<TileButton>(1).hasFocus());
    tab();
    QVERIFY(page_->title(1).hasFocus());
    QCOMPARE(page_->list().selected(), page_->id(1));
  }

 private:
  /// The page in a scrolling window, as the settings window shows it, with commands "0" to "4".
  struct Page {
    Page() {
      std::vector<CLICommand> commands;
      for (int number = 0; number < 5; ++number)
        commands.push_back({QUuid::createUuid(), QString::number(number), u"ls"_s, false, std::nullopt});
      store.setCommands(commands);
    }
    void open() {
      view = new FrequentCLIsSettingsView(store, focused);
      window.setWidgetResizable(true);
      window.setWidget(view);
      window.resize(480, 300);
      window.show();
      QVERIFY(QTest::qWaitForWindowActive(&window));
    }
    QString order() const {
      QString order;
      for (const CLICommand& command : store.commands()) order += command.title;
      return order;
    }
    const QUuid& id(std::size_t index) const { return store.commands()[index].id; }
    CommandListEditor& list() const { return *view->findChild<CommandListEditor*>(); }
    /// The editor of the command at `index`.
    CommandRowEditor& row(std::size_t index) const {
      for (auto* row : view->findChildren<CommandRowEditor*>())
        if (row->command().id == id(index)) return *row;
      qFatal("no such row");
    }
    template <class Part>
    Part& part(std::size_t index, int number = 0) const {
      return *row(index).findChildren<Part*>().at(number);
    }
    QLineEdit& title(std::size_t index) const { return part<QLineEdit>(index, 0); }
    QLineEdit& command(std::size_t index) const { return part<QLineEdit>(index, 1); }
    QToolButton& button(int number) const { return *view->findChildren<QToolButton*>().at(number); }

    QTemporaryDir dir;
    FakeClock clock;
    CommandStore store{Folders{dir.path()}, clock};
    FocusedCommand focused;
    QScrollArea window;
    FrequentCLIsSettingsView* view = nullptr;
  };
  /// Takes hold of a row and moves the pointer down by `rows`.

  void drag(CommandRowEditor& row, int rows) {
    const QPoint grip(6, 10);
    QTest::mousePress(&row, Qt::LeftButton, {}, grip);
    const int step = (rows > 0 ? 1 : -1) * row.height();
    // Positions are relative to the row, which follows the pointer.
    for (int moved = 0; moved < std::abs(rows); ++moved) QTest::mouseMove(&row, grip + QPoint(0, step));
  }

  std::unique_ptr<Page> page_;
};

QTEST_MAIN(FrequentCLIsSettingsTest)
#include "test_frequent_clis_settings.moc"
