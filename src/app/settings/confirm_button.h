#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

/// A button for what cannot be taken back: pressed, it asks in its own place before it does anything. Escape, or going
/// elsewhere, means no.
class ConfirmButton : public QWidget {
  Q_OBJECT

 public:
  /// `confirm` is the text of the button that does it, "Reset" say.
  ConfirmButton(const QString& text, const QString& question, const QString& confirm);

 Q_SIGNALS:
  void confirmed();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void ask(bool asking);
  void takeBackWhenLeft(const QWidget* focused);

  QPushButton* button_;
  QLabel* question_;
  QPushButton* cancel_;
  QPushButton* confirm_;
};
