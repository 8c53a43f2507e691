#pragma once

#include "tools/asking/ask_view.h"

class QMimeData;
class QToolButton;
class QuickQuestionPanelController;

/// The card of Ask AI: a conversation to which images may be attached, by its buttons or by a drop.
class QuickQuestionView : public AskView {
  Q_OBJECT

 public:
  explicit QuickQuestionView(QuickQuestionPanelController& controller, QWidget* parent = nullptr);

 Q_SIGNALS:
  /// Something was dropped here: the user goes on here.
  void dropped();

 protected:
  std::vector<KeyHint> hints() const override;
  void follow() override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void setTargeted(bool targeted);
  void take(const QMimeData& offered);

  QuickQuestionPanelController& controller_;
  QToolButton* snip_;
  QToolButton* file_;
  bool targeted_ = false;
};
