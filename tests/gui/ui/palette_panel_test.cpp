#include "core/ui/palette_panel.h"

#include <QLineEdit>
#include <QScreen>
#include <QSignalSpy>
#include <QVBoxLayout>
#include <QWindow>

#include "core/ui/search_field.h"
#include "core/ui/theme.h"
#include "support/fake_panel_window.h"
#include "support/two_screens.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kSize(640, 480);

/// A shown panel whose handler remembers every key and takes those it is told to.
struct World {
  explicit World(bool translucent = true) {
    native.translucent = translucent;
    panel.setKeyHandler([this](const KeyPress& press) {
      presses.push_back(press);
      return consumes;
    });
  }

  FakePanelWindow native;
  std::vector<KeyPress> presses;
  bool consumes = true;
  PalettePanel panel{native, kSize};
};

}  // namespace

class PalettePanelTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void standsOnThePointersScreenALittleAboveTheMiddle() {
    World world;
    QCOMPARE(QGuiApplication::screens().size(), 2);
    QCursor::setPos(100, 100);
    world.panel.positionOnActiveScreen();
    QCOMPARE(world.panel.pos(), QPoint(480, 102));
    QCursor::setPos(2000, 500);
    world.panel.positionOnActiveScreen();
    QCOMPARE(world.panel.pos(), QPoint(1920, 249));
    // The corner below the left screen belongs to none.
    QCursor::setPos(100, 1000);
    world.panel.positionOnActiveScreen();
    QCOMPARE(world.panel.pos(), QPoint(480, 102));
  }

  void takesTheKeyboardWhileItStands() {
    World world;
    world.panel.present();
    QVERIFY(world.panel.isVisible());
    QCOMPARE(world.native.keyboardOwner, world.panel.windowHandle());
    world.panel.present();
    QCOMPARE(world.native.preparations, 2);
    world.panel.dismiss();
    QVERIFY(!world.panel.isVisible());
    QCOMPARE(world.native.keyboardOwner, nullptr);
    QVERIFY(!world.native.isWatched());
  }

  void givesTheKeyboardBackWhenItIsDestroyed() {
    FakePanelWindow native;
    auto panel = std::make_unique<PalettePanel>(native, kSize);
    panel->present();
    panel.reset();
    QCOMPARE(native.keyboardOwner, nullptr);
    QVERIFY(!native.isWatched());
  }

  void tellsOfClicksElsewhere() {
    World world;
    QSignalSpy resigned(&world.panel, &PalettePanel::resignedKey);
    world.panel.present();
    const int margin = Theme::kPanelMargin;
    QCOMPARE(world.native.watchedCard, QRect(QPoint(), kSize).adjusted(margin, margin, -margin, -margin));
    world.native.loseKeyboard();
    QCOMPARE(resigned.size(), 1);
  }

  void handsOverKeysTextAndTab() {
    World world;
    world.panel.present();
    QTest::keyClick(&world.panel, Qt::Key_E, Qt::ControlModifier);
    QTest::keyClick(&world.panel, Qt::Key_Tab);
    QTest::keyClick(&world.panel, Qt::Key_Backtab, Qt::ShiftModifier);
    QInputMethodEvent composed;
    composed.setCommitString(u"é"_s);
    QApplication::sendEvent(&world.panel, &composed);
    QCOMPARE(world.presses.size(), 4U);
    QCOMPARE(world.presses[0].keyCode, keycode::kE);
    QVERIFY(world.presses[0].command);
    QCOMPARE(world.presses[1].keyCode, keycode::kTab);
    QCOMPARE(world.presses[2].keyCode, keycode::kTab);
    QVERIFY(world.presses[2].shift);
    QCOMPARE(world.presses[3].characters, u"é"_s);
    QVERIFY(world.presses[3].isText());
  }

  void showsWhatAnInputMethodComposes() {
    World world;
    auto* field = new SearchField(u"Search"_s);
    world.panel.setContent(field);
    world.panel.present();
    const auto compose = [&world](const QString& preedit, const QString& commit) {
      QInputMethodEvent event(preedit, {});
      event.setCommitString(commit);
      QApplication::sendEvent(&world.panel, &event);
      return world.panel.inputMethodQuery(Qt::ImCursorRectangle).toRect();
    };
    const QRect empty = compose({}, {});
    QVERIFY(world.native.watchedCard.contains(empty));
    const QRect composing = compose(u"にほん"_s, {});
    QVERIFY(composing.left() > empty.left());
    QVERIFY(world.presses.empty());
    QCOMPARE(compose({}, u"日本"_s), empty);
    QCOMPARE(world.presses.size(), 1U);
    QCOMPARE(world.presses[0].characters, u"日本"_s);
    compose(u"に"_s, {});
    world.panel.dismiss();
    QCOMPARE(field->caretRect().left(), empty.left() - field->mapTo(&world.panel, QPoint()).x());
  }

  void isAskedBeforeTheFieldThatHasTheFocus() {
    World world;
    auto* field = new QLineEdit;
    world.panel.setContent(field);
    world.panel.present();
    field->setFocus();
    QWindow* window = world.panel.windowHandle();
    QTest::keyClick(window, Qt::Key_A);
    QCOMPARE(world.presses.size(), 1U);
    QVERIFY(field->text().isEmpty());
    world.consumes = false;
    QTest::keyClick(window, Qt::Key_B);
    QCOMPARE(field->text(), u"b"_s);
  }

  void isCutToItsCardWithoutTranslucency() {
    World plain(false);
    plain.panel.present();
    QCOMPARE(plain.panel.mask().boundingRect(), plain.native.watchedCard);
    QVERIFY(!plain.panel.mask().contains(plain.native.watchedCard.topLeft()));
    // A compositor has come since.
    plain.native.translucent = true;
    plain.panel.dismiss();
    plain.panel.present();
    QVERIFY(plain.panel.mask().isEmpty());
    QCOMPARE(plain.native.inputRegion.boundingRect(), plain.native.watchedCard);
  }

  void movesOnlyWhenItMay() {
    World world;
    QSignalSpy moved(&world.panel, &PalettePanel::moved);
    world.panel.move(100, 100);
    world.panel.present();
    const auto drag = [&panel = world.panel] {
      QTest::mousePress(&panel, Qt::LeftButton, {}, {100, 60});
      QTest::mouseMove(&panel, {130, 80});
      QTest::mouseRelease(&panel, Qt::LeftButton, {}, {130, 80});
    };
    drag();
    QCOMPARE(world.panel.pos(), QPoint(100, 100));
    world.panel.setMovable(true);
    QTest::mouseClick(&world.panel, Qt::LeftButton, {}, {100, 60});
    QCOMPARE(moved.size(), 0);
    drag();
    QCOMPARE(moved.size(), 1);
    QCOMPARE(world.panel.pos(), moved.front().front().toPoint());
    QVERIFY(world.panel.pos() != QPoint(100, 100));
  }
};

int main(int argc, char** argv) { return runOnTwoScreens<PalettePanelTest>(argc, argv); }
#include "palette_panel_test.moc"
