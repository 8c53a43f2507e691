#pragma once

#include <QWidget>

class HotkeyCenter;
class QLabel;
class QPushButton;

/// The button that gives every tool its first shortcut again. It asks in its own place before it does.
class ResetAllControl : public QWidget {
  Q_OBJECT

 public:
  explicit ResetAllControl(HotkeyCenter& hotkeys, QWidget* parent = nullptr);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void ask(bool asking);
  void follow();

  HotkeyCenter& hotkeys_;
  QPushButton* reset_;
  QLabel* question_;
  QPushButton* cancel_;
  QPushButton* confirm_;
  bool asking_ = false;
};
