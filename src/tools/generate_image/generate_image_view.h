#pragma once

#include <QWidget>

class FooterHints;
class GenerateImagePanelController;
class QLabel;
class QPushButton;
class RequestColumn;
class ResultColumn;

/// The Generate Image panel's card. It draws the model; clicks and drops go to the controller. Only the prompt takes
/// the focus: the keys are the panel's first.
class GenerateImageView final : public QWidget {
  Q_OBJECT

 public:
  explicit GenerateImageView(GenerateImagePanelController& controller, QWidget* parent = nullptr);

  /// Whether some of the prompt is selected.
  bool hasSelection() const;
  /// Without the keyboard, the foot says how to get it.
  void setHasKeyboard(bool hasKeyboard);

 Q_SIGNALS:
  /// Something was dropped here: the user goes on here.
  void dropped();

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  QWidget* makeHeader();
  void follow();
  QString notice() const;

  GenerateImagePanelController& controller_;
  QLabel* count_;
  QPushButton* new_;
  RequestColumn* request_;
  ResultColumn* result_;
  FooterHints* footer_;
  bool hasKeyboard_ = true;
};
