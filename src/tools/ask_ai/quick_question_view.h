#pragma once

#include <QUrl>
#include <QWidget>

class AskComposer;
class AskHeader;
class FooterHints;
class QMimeData;
class QToolButton;
class QuickQuestionPanelController;
class TranscriptView;

/// The card of Ask AI: the conversation, and the field for the next question with what is attached to it. It draws the
/// model; drops and clicks go to the controller.
class QuickQuestionView : public QWidget {
  Q_OBJECT

 public:
  explicit QuickQuestionView(QuickQuestionPanelController& controller, QWidget* parent = nullptr);

  /// What the user has marked, in the field or in the transcript; empty: nothing.
  QString selectedText() const;
  void scrollTranscript(double pages);
  void focusField();
  /// Words are for the field, wherever the keyboard is; but a space presses a button.
  void takeTyping(const QString& characters);

 Q_SIGNALS:
  void linkChosen(const QUrl& url);
  /// Something was dropped here: the user goes on here.
  void dropped();

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void connectParts();
  void follow();
  void setTargeted(bool targeted);
  void take(const QMimeData& offered);

  QuickQuestionPanelController& controller_;
  AskHeader* header_;
  TranscriptView* transcript_;
  AskComposer* composer_;
  QToolButton* snip_;
  QToolButton* file_;
  FooterHints* footer_;
  bool targeted_ = false;
};
