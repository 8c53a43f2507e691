#pragma once

#include <QWidget>

class GenerateImagePanelController;
class OptionBar;
class PrimaryButton;
class PromptEditor;
class ReferenceRow;
class QPushButton;

/// The left half of the panel: the prompt, what goes with it, and the button that starts.
class RequestColumn final : public QWidget {
  Q_OBJECT

 public:
  explicit RequestColumn(GenerateImagePanelController& controller, QWidget* parent = nullptr);

  PromptEditor& editor() { return *editor_; }
  void follow();

 private:
  void makeOptions();
  QWidget* makeAttachButtons();

  GenerateImagePanelController& controller_;
  PromptEditor* editor_;
  ReferenceRow* references_;
  OptionBar* size_ = nullptr;
  OptionBar* quality_ = nullptr;
  QPushButton* snip_ = nullptr;
  QPushButton* attach_ = nullptr;
  PrimaryButton* generate_;
};
