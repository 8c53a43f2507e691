#pragma once

#include <QFrame>
#include <QPointer>

#include <functional>
#include <vector>

#include "core/hotkeys/key_press.h"

/// A context menu drawn inside a panel: a menu window of its own would take over the keyboard that the panel holds.
/// What had the keyboard gets it back when the menu closes, which it does with the panel.
class PanelMenu : public QFrame {
  Q_OBJECT

 public:
  struct Entry {
    QString text;
    /// Key caps of what does the same without the menu.
    QStringList keys{};
    /// Called when the menu is closed already.
    std::function<void()> choose;
  };

  /// `name` is for screen readers.
  PanelMenu(const QString& name, QWidget* parent);

  /// Shows the menu with its corner at `position` in the parent, moved to stay inside.
  void popup(const std::vector<Entry>& entries, const QPoint& position);
  /// Whether an open menu has used the key; one that means nothing to it closes it, and goes on to where it belongs.
  bool handleKey(const KeyPress& key);

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  class Row;

  void add(const Entry& entry);
  void moveBy(int rows);
  void press();
  void giveKeyboardBack();

  std::vector<Row*> rows_;
  QPointer<QWidget> keyboard_;
};
