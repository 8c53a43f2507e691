#pragma once

#include <QPointer>
#include <QWidget>

#include <functional>
#include <optional>

#include "base/job.h"
#include "core/hotkeys/key_press.h"
#include "platform/panel_window.h"

class CardFrame;
class PanelPosition;
class QScreen;

/// The screen under the pointer, else the primary one; null without any.
QScreen* activeScreen();

/// The floating panel of every palette: takes the keyboard while the user's own application stays the active one.
///
/// Every key goes to the key handler first, whichever child has the focus; text of input methods arrives there as a
/// KeyPress of characters. A click elsewhere or the loss of the keyboard emits `resignedKey()`; the controller then
/// hides the panel.
class PalettePanel : public QWidget {
  Q_OBJECT

 public:
  using KeyHandler = std::function<bool(const KeyPress&)>;

  /// `size` includes the transparent margin of Theme::kPanelMargin on every side.
  PalettePanel(PanelWindow& native, QSize size, QWidget* parent = nullptr);
  ~PalettePanel() override;

  /// The panel takes ownership of `content` and fills its card with it.
  void setContent(QWidget* content);
  void setKeyHandler(KeyHandler handler) { handleKey_ = std::move(handler); }
  /// Whether the user may drag the panel by its card.
  void setMovable(bool movable) { movable_ = movable; }
  /// Whether the panel is one that stays where it is when the user turns elsewhere: a click elsewhere then gives the
  /// keyboard back, and a click on the panel takes it again. Its controller does not hide it.
  void setStaysUp(bool staysUp) { staysUp_ = staysUp; }

  /// Whether Tab goes from control to control; without, it is a key like any other.
  void setTabMovesFocus(bool tabMovesFocus) { tabMovesFocus_ = tabMovesFocus; }
  /// Whether something may be dragged here out of other windows: a press there is then a click elsewhere only once the
  /// button has been let go, and a drop on the panel takes the keyboard again.
  void setTakesDrags(bool takesDrags) { takesDrags_ = takesDrags; }

  /// Centres the panel on the active screen's vertical centre line, its own centre at 62 % of the available height
  /// measured from the bottom. Does nothing when there is no screen.
  void positionOnActiveScreen();
  /// The same, unless the user has put the panel somewhere else before.
  void positionAt(const PanelPosition& remembered);
  /// Makes the native window and lays everything out, so that the first show does not have to.
  void warmUp();
  /// Shows the panel and directs the keyboard to it.
  void present();
  /// Directs the keyboard to the shown panel again.
  void takeKeyboard();
  /// Gives the keyboard back and hides.
  void dismiss();

  QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

 Q_SIGNALS:
  void resignedKey();
  /// A panel that stays up has the keyboard (again).
  void becameKey();
  /// The user has dragged the panel; only for panels that may be moved.
  void moved(QPoint origin);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool focusNextPrevChild(bool next) override;

 private:
  bool offer(const KeyPress& press);
  bool askForMenu();
  void cutToCard();
  void watchForLoss();
  void loseKeyboard();
  void awaitRelease();

  PanelWindow& native_;
  /// Asked anew at each show: a compositor may start after we did.
  bool translucent_;
  CardFrame* card_;
  KeyHandler handleKey_;
  bool movable_ = false;
  bool staysUp_ = false;
  bool watching_ = false;
  bool tabMovesFocus_ = false;
  bool takesDrags_ = false;
  Job release_;
  struct Grip {
    /// Where the card was taken hold of, in panel coordinates.
    QPoint point;
    bool hasMoved = false;
  };
  std::optional<Grip> grip_;
};
