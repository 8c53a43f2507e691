#pragma once

#include <QWidget>

#include "core/tools/shortcut_entry.h"

class IconTileView;
class KeyCaps;
class QLabel;
class QPushButton;
class QVBoxLayout;

/// The card that tells about one shortcut, with an arrow to the key. A child of its window, so that it never takes the
/// keyboard away; it lies over its siblings.
class ShortcutPopover : public QWidget {
  Q_OBJECT

 public:
  explicit ShortcutPopover(QWidget* window);

  const ShortcutEntry& entry() const { return entry_; }
  /// `remarks`: what else there is to know, a sentence each.
  void setEntry(const ShortcutEntry& entry, const QStringList& remarks);
  /// Shows the card below `anchor`, or above when that has more room; in the window's coordinates.
  void showAt(const QRect& anchor);
  /// Moves the keyboard to its first button.
  void enter();
  bool hasKeyboard() const;

 Q_SIGNALS:
  void opened();
  void changeWanted();
  void pointed();
  void left();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  QWidget* makeHead();
  QWidget* makeButtons();
  void fillNotes(const QStringList& remarks);
  void addNote(const QString& text, const QString& symbol);
  QRect cardRect() const;

  ShortcutEntry entry_;
  IconTileView* tile_;
  QLabel* name_;
  KeyCaps* caps_;
  QLabel* summary_;
  QVBoxLayout* notes_;
  QPushButton* open_;
  QPushButton* change_;
  int arrow_ = 0;
  bool isBelow_ = true;
};
