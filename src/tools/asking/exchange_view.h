#pragma once

#include <QImage>
#include <QWidget>

#include <vector>

class AnswerTextView;
class QLabel;

/// One question, set off at the right below what went along with it, and then the answer.
class ExchangeView : public QWidget {
  Q_OBJECT

 public:
  /// `thumbnails`: of the images that went along.
  explicit ExchangeView(const QString& question, const std::vector<QImage>& thumbnails = {}, QWidget* parent = nullptr);

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
