#pragma once

#include <QUrl>
#include <QWidget>

#include "core/ui/footer_hints.h"

class AskComposer;
class AskFlow;
class AskHeader;
class AskModel;
class AnswerTextView;
class QHBoxLayout;
class PanelMenu;
class TranscriptView;

/// The card of a conversation: what it is, what was said, the field for the next question, and the keys at its foot. It
/// draws the model; what the user does goes to the flow.
class AskView : public QWidget {
  Q_OBJECT

 public:
  /// What the user has marked, in the field or in the transcript; empty: nothing.
  QString selectedText() const;
  void scrollTranscript(double pages);
  void focusField();
  /// Words are for the field, wherever the keyboard is; but a space presses a button.
  void takeTyping(const QString& characters);
  /// Presses the button or the link that the keyboard is at; false when it is at none.
  bool pressFocused();
  /// Keys go there first.
  PanelMenu& menu() { return *menu_; }

 Q_SIGNALS:
  void linkChosen(const QUrl& url);

 protected:
  struct Texts {
    QString symbol;
    QString title;
    /// What stands there before the first question.
    QString empty;
  };

  AskView(AskModel& model, AskFlow& flow, const Texts& texts, QWidget* parent);

  AskComposer& composer() { return *composer_; }
  FooterHints& footer() { return *footer_; }
  /// To the left of the transcript.
  void addBeside(QWidget* widget);

  /// From one stop of the keyboard to the next in reading order, whichever was made first.
  bool focusNextPrevChild(bool next) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  /// The keys that can be pressed now.
  virtual std::vector<KeyHint> hints() const = 0;
  /// Draws what has changed; the first time when the derived class calls it.
  virtual void follow();

 private:
  std::vector<QWidget*> stops() const;
  void layOut();
  void connectParts();
  void showMenu(AnswerTextView* text, const QPoint& place, const QUrl& link);

  AskFlow& flow_;
  AskHeader* header_;
  TranscriptView* transcript_;
  AskComposer* composer_;
  FooterHints* footer_;
  QHBoxLayout* middle_;
  PanelMenu* menu_;
};
