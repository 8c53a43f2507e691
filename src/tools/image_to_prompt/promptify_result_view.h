#pragma once

#include <QWidget>

class PrimaryButton;
class PromptifyResultController;
class QLabel;

/// The card with a prompt: what it is of, the prompt itself, and a button that copies it again. It draws the model; the
/// text has the focus, so that the keys scroll it.
class PromptifyResultView final : public QWidget {
  Q_OBJECT

 public:
  explicit PromptifyResultView(PromptifyResultController& controller, QWidget* parent = nullptr);

  /// Without the keyboard, the foot says how to get it.
  void setHasKeyboard(bool hasKeyboard);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QWidget* makeHeader();
  QWidget* makeTitle() const;
  QWidget* makeFooter();
  void follow();

  PromptifyResultController& controller_;
  PrimaryButton* copy_;
  QLabel* hint_;
};
