#pragma once

#include <QString>
#include <QWidget>

class QLabel;
class QPushButton;

/// A button for what cannot be taken back: pressed, it asks in its own place before it does anything. Escape, or going
/// elsewhere, means no.
class ConfirmButton : public QWidget {
  Q_OBJECT

 public:
  /// What stands on a button, and its name for screen readers, which do not see the row around it.
  struct Label {
    QString text;
    QString name;
  };
  /// `confirm` is the button that does it, `cancel` the one that does not.
  struct Texts {
    Label button;
    QString question;
    Label cancel;
    Label confirm;
  };

  explicit ConfirmButton(const Texts& texts);

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
