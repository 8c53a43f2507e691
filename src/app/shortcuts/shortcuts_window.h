#pragma once

#include <QTimer>

#include <optional>

#include "app/app_context.h"
#include "app/shortcuts/keyboard_layout_model.h"
#include "app/shortcuts/modifier_watch.h"
#include "core/ui/titled_window.h"

class KeyboardView;
class ShortcutList;
class ShortcutPopover;

/// The window "Keyboard Shortcuts": a drawn keyboard that shows live what the held modifiers reach, a popover for each
/// shortcut, and all of them in a list. It makes way for a tool that is started while it is open.
class ShortcutsWindow : public TitledWindow, public ShortcutsWindowGate {
  Q_OBJECT

 public:
  explicit ShortcutsWindow(AppContext& context, ModifierWatch::Query query = QGuiApplication::queryKeyboardModifiers);
  ~ShortcutsWindow() override;

  void open() override;
  bool closeIfVisible() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void arrange();
  void followKeyboard();
  void followList();
  void followPopover();
  /// Shows the popover of a shortcut; `stays` until something else is chosen, otherwise while the pointer is there.
  void tell(std::size_t entry, bool stays);
  void hidePopover();
  void followModel();
  void enterPopover(std::size_t entry);
  void start(std::size_t entry);
  std::size_t entryOn(std::size_t key) const;
  QWidget* anchorOf(std::size_t entry) const;

  AppContext& context_;
  KeyboardLayoutModel model_;
  ModifierWatch modifiers_;
  KeyboardView* keyboard_;
  ShortcutList* list_;
  ShortcutPopover* popover_;
  /// What the popover tells about.
  std::optional<std::size_t> told_;
  bool stays_ = false;
  QTimer pointerGone_;
};
