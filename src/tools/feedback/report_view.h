#pragma once

#include <QWidget>

class FeedbackPanelController;
class FooterHints;
class MessageField;
class PrimaryButton;
class QStackedLayout;
class ReportPanelController;
class SnipStrip;
class TonedLabel;

/// The card of feedback and of suggestions: the words, the snips, and what became of them. It draws the model; only the
/// words have the focus, everything else is reached by the panel's keys or the mouse.
class ReportView final : public QWidget {
  Q_OBJECT

 public:
  /// `choice` stands above the words, if there is one; becomes a child. `name` is the tool's.
  ReportView(ReportPanelController& controller, const QString& name, QWidget* choice = nullptr,
             QWidget* parent = nullptr);

  /// Without the keyboard, the foot says how to get it.
  void setHasKeyboard(bool hasKeyboard);

 Q_SIGNALS:
  /// Something was dropped here: the user goes on here.
  void dropped();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QWidget* makeForm(QWidget* choice);
  QWidget* makeFoot();
  QWidget* makeThanks();
  void follow();
  void followState();

  ReportPanelController& controller_;
  MessageField* message_;
  SnipStrip* snips_;
  TonedLabel* state_;
  PrimaryButton* send_;
  QStackedLayout* pages_;
  FooterHints* footer_;
  bool hasKeyboard_ = true;
};

/// The choice of what kind of report it is.
class CategoryPills final : public QWidget {
  Q_OBJECT

 public:
  explicit CategoryPills(FeedbackPanelController& controller, QWidget* parent = nullptr);
};
