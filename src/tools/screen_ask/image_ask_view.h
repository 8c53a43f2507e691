#pragma once

#include <QUrl>
#include <QWidget>

class AskComposer;
class AskHeader;
class CapturePreview;
class FooterHints;
class ImageAskPanelController;
class TranscriptView;

/// The card of Screen ask: the capture, and beside it the conversation about it. It draws the model; clicks go to the
/// controller.
class ImageAskView : public QWidget {
  Q_OBJECT

 public:
  explicit ImageAskView(ImageAskPanelController& controller, QWidget* parent = nullptr);

  /// What the user has marked, in the field or in the transcript; empty: nothing.
  QString selectedText() const;
  void scrollTranscript(double pages);
  void focusField();
  /// Words are for the field, wherever the keyboard is; but a space presses a button.
  void takeTyping(const QString& characters);
  /// Without the keyboard, the foot says how to get it.
  void setHasKeyboard(bool hasKeyboard);

 Q_SIGNALS:
  void linkChosen(const QUrl& url);

 private:
  void connectParts();
  void follow();

  ImageAskPanelController& controller_;
  AskHeader* header_;
  CapturePreview* preview_;
  TranscriptView* transcript_;
  AskComposer* composer_;
  FooterHints* footer_;
};
