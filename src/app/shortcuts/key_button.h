#pragma once

#include <QAbstractButton>

#include "app/shortcuts/key_painter.h"

/// A drawn key that carries a shortcut. Return opens what it carries, Space its details, arrows go to the next one.
class KeyButton : public QAbstractButton {
  Q_OBJECT

 public:
  explicit KeyButton(QWidget* parent);

  const KeyFace& face() const { return face_; }
  void setFace(const KeyFace& face);
  /// Shown as if the pointer were on it, for the row in the list that means the same.
  void setPointedAt(bool pointedAt);

 Q_SIGNALS:
  void pointed();
  void left();
  void focused(Qt::FocusReason reason);
  void opened();
  void entered();
  void stepped(KeyboardLayoutModel::Direction direction);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;

 private:
  KeyFace face_;
  bool pointedAt_ = false;
};
