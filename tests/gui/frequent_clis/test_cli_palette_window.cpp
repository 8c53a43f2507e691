#include "tools/frequent_clis/cli_palette_window.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QPushButton>
#include <QTest>

#include "core/ui/palette_list.h"
#include "core/ui/panel_menu.h"
#include "core/ui/search_field.h"
#include "support/cli_world.h"
#include "support/fake_panel_window.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class CLIPaletteWindowTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() { world_ = std::make_unique<World>(); }

  void typedLettersFilterAndReturnTypes() {
    world_->palette.show();
    QCOMPARE(world_->panel().size(), QSize(716, 476));
    QCOMPARE(world_->native.watchedCard, QRect(48, 48, 620, 380));
    QTest::keyClicks(&world_->panel(), u"YOLO"_s);
    QCOMPARE(world_->search().text(), u"YOLO"_s);
    QCOMPARE(world_->list().model()->rowCount(), 1);
    QTest::keyClick(&world_->panel(), Qt::Key_Return);
    QVERIFY(world_->panel().isHidden());
    QVERIFY(!world_->native.keyboardOwner);
    world_->clock.advance(119ms);
    QVERIFY(world_->events.sequences.empty());
    world_->clock.advance(1ms);
    QCOMPARE(world_->events.sequences, std::vector<KeySequence>{KeystrokeSender::sequence(u"codex --yolo"_s, false)});

    world_->palette.show();
    QCOMPARE(world_->search().text(), QString());
    QCOMPARE(world_->list().currentIndex().row(), 0);
  }

  void selectionIsScrolledIntoViewAndRead() {
    for (int number = 0; number < 40; ++number) world_->add(u"Command %1"_s.arg(number), u"run"_s, true);
    world_->palette.show();
    QTest::keyClick(&world_->panel(), Qt::Key_Up);
    QCOMPARE(world_->list().currentIndex().row(), 41);
    QVERIFY(world_->list().viewport()->rect().contains(world_->list().visualRect(world_->list().currentIndex())));
    QTest::keyClick(&world_->panel(), Qt::Key_Down);
    QVERIFY(world_->list().viewport()->rect().contains(world_->list().visualRect(world_->list().currentIndex())));

    auto* accessible = QAccessible::queryAccessibleInterface(&world_->list());
    QCOMPARE(accessible->role(), QAccessible::List);
    QCOMPARE(accessible->childCount(), 42);
    QCOMPARE(accessible->child(41)->text(QAccessible::Name), u"Command 39, run, runs immediately"_s);
    QVERIFY(accessible->child(0)->state().selected);
  }

  void clickChoosesTheRowUnderThePointer() {
    world_->palette.show();
    QTest::mouseClick(world_->list().viewport(), Qt::LeftButton, {}, world_->row(1));
    QVERIFY(world_->panel().isHidden());
    world_->clock.advance(120ms);
    QCOMPARE(world_->events.sequences, std::vector<KeySequence>{KeystrokeSender::sequence(u"codex --yolo"_s, false)});
  }

  void contextMenuEditsItsRow() {
    world_->palette.show();
    QTest::mouseClick(world_->list().viewport(), Qt::RightButton, {}, world_->row(1));
    QVERIFY2(world_->panel().isVisible(), "a right click chooses nothing");
    world_->openMenu(1);
    QVERIFY(world_->menu().isVisible());
    auto* entry = world_->menu().findChild<QPushButton*>();
    QCOMPARE(entry->text(), u"Edit Command…"_s);
    QTest::mouseClick(entry, Qt::LeftButton);
    QVERIFY(world_->panel().isHidden());
    QCOMPARE(world_->settings.opened, QStringList(world_->store.commands()[1].id.toString(QUuid::WithoutBraces)));
  }

  void escapeClosesTheMenuThenThePalette() {
    world_->palette.show();
    world_->openMenu(0);
    QTest::keyClick(&world_->panel(), Qt::Key_Escape);
    QVERIFY(world_->menu().isHidden());
    QVERIFY(world_->panel().isVisible());

    world_->openMenu(0);
    QTest::mouseClick(world_->list().viewport(), Qt::LeftButton, {}, world_->row(1));
    QVERIFY2(world_->panel().isVisible(), "the click only closes the menu");
    QVERIFY(world_->menu().isHidden());
    QTest::keyClick(&world_->panel(), Qt::Key_Escape);
    QVERIFY(world_->panel().isHidden());
  }

  void losingTheKeyboardHides() {
    world_->palette.show();
    world_->native.loseKeyboard();
    QVERIFY(world_->panel().isHidden());
    QVERIFY(!world_->palette.isShown());
    QVERIFY(world_->launcher.shown.isEmpty());
  }

 private:
  /// Outlives the panel, which gives its keyboard back when it goes.
  struct Native {
    FakePanelWindow native;
    CLIPaletteWindow* window = nullptr;
  };
  struct World : Native, CLIWorld {
    World()
        : CLIWorld([this] {
            auto made = std::make_unique<CLIPaletteWindow>(native, palette);
            window = made.get();
            return made;
          }) {}

    PalettePanel& panel() { return window->panel(); }
    PaletteList& list() { return *panel().findChild<PaletteList*>(); }
    SearchField& search() { return *panel().findChild<SearchField*>(); }
    PanelMenu& menu() { return *panel().findChild<PanelMenu*>(); }
    QPoint row(int index) { return list().visualRect(palette.model().index(index)).center(); }
    void openMenu(int index) {
      QContextMenuEvent event(QContextMenuEvent::Mouse, row(index), list().viewport()->mapToGlobal(row(index)));
      QCoreApplication::sendEvent(list().viewport(), &event);
    }
  };
  std::unique_ptr<World> world_;
};

QTEST_MAIN(CLIPaletteWindowTest)
#include "test_cli_palette_window.moc"
