#pragma once

#include <QWidget>

class CustomInstructionController;
class CustomInstructionModel;
class PrimaryButton;
class QPlainTextEdit;
class QPushButton;

/// The instruction panel's card: a text area, what its keys do, and the two buttons.
class CustomInstructionView final : public QWidget {
  Q_OBJECT

 public:
  explicit CustomInstructionView(CustomInstructionController& controller, QWidget* parent = nullptr);

  void focusText();
  /// The keyboard goes round: text area and buttons.
  void moveFocus(bool backwards);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QWidget* makeField();
  QWidget* makeFoot();
  void follow();

  CustomInstructionModel& model_;
  QPlainTextEdit* text_;
  QPushButton* cancel_;
  PrimaryButton* transform_;
};
