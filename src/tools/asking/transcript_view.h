#pragma once

#include <QPointer>
#include <QScrollArea>
#include <QTimer>
#include <QUrl>

#include "tools/asking/ask_model.h"

class AnswerTextView;
class ExchangeView;
class QLabel;
class QVBoxLayout;
class TonedLabel;

/// The questions and answers of a conversation, oldest first, the newest in sight; an answer that is still arriving
/// grows at its end, and what went wrong stands below it.
class TranscriptView : public QScrollArea {
  Q_OBJECT

 public:
  /// `emptyText`: what stands here before the first question.
  TranscriptView(AskModel& model, const QString& emptyText, QWidget* parent = nullptr);

  /// What the user has marked anywhere in it; empty: nothing.
  QString selectedText() const;
  /// Where the keyboard stops, in reading order.
  std::vector<QWidget*> stops() const;
  /// By this share of what is in sight.
  void scroll(double pages);
  /// Asks for the menu of the text that the user is at: what is marked, else where the keyboard is, else the newest
  /// answer. False without any.
  bool askForMenu();

 Q_SIGNALS:
  void copyWanted(const QString& text);
  void linkChosen(const QUrl& url);
  /// `place` is global; `link`: the address there, if any.
  void menuWanted(AnswerTextView* text, const QPoint& place, const QUrl& link);

 private:
  void follow();
  void followExchanges();
  void followOpen();
  void grow();
  void showPartial();
  void showStop(QWidget* stop);
  AnswerTextView* textAtHand() const;
  void clearOtherSelections(const AnswerTextView* chosen);
  ExchangeView* add(const QString& question, const std::vector<QImage>& thumbnails);
  void keepEndInSight();

  AskModel& model_;
  QVBoxLayout* column_;
  std::vector<ExchangeView*> exchanges_;
  /// Of the question that is being answered, or whose answer broke off.
  ExchangeView* open_ = nullptr;
  TonedLabel* error_;
  QLabel* empty_;
  /// Until what has arrived is drawn.
  QTimer growth_;
  /// What came all at once is read from its beginning: this is at the top, not the end in sight.
  QPointer<ExchangeView> top_;
  bool isBroken_ = false;
  bool isAtEnd_ = true;
};
