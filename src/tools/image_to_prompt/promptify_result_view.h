#pragma once

#include <QWidget>

class PanelMenu;
class PrimaryButton;
class PromptifyResultController;
class PromptText;
class QLabel;

/// The card with a prompt: what it is of, the prompt itself, and a button that copies it again. It draws the model; the
/// text has the focus, so that the keys scroll it.
class PromptifyResultView final : public QWidget {
  Q_OBJECT

 public:
  explicit PromptifyResultView(PromptifyResultController& controller, QWidget* parent = nullptr);

  /// Without the keyboard, the foot says how to get it.
  void setHasKeyboard(bool hasKeyboard);
  /// Keys go there first.
  PanelMenu& menu() { return *menu_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QWidget* makeHeader();
  QWidget* makeTitle() const;
  QWidget* makeFooter();
  void follow();
  void showMenu(const QPoint& place);

  PromptifyResultController& controller_;
  PrimaryButton* copy_;
  QLabel* hint_;
  PromptText* text_;
  PanelMenu* menu_;
};
