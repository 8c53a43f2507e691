#pragma once

#include <QWidget>

class AnswerTextView;
class QLabel;

/// One question, set off at the right, and below it the answer.
class ExchangeView : public QWidget {
  Q_OBJECT

 public:
  explicit ExchangeView(const QString& question, QWidget* parent = nullptr);

  /// As far as it has come; an empty one is still thought about.
  void showAnswer(const QString& markdown, bool isWhole);
  AnswerTextView& answer() { return *answer_; }
  AnswerTextView& question() { return *question_; }
  QString selectedText() const;

 private:
  AnswerTextView* question_;
  AnswerTextView* answer_;
  QLabel* waiting_;
  QLabel* cut_;
};
