#pragma once

#include <QObject>

#include "tools/asking/ask_exchange.h"

/// A conversation as its panel shows it. Main thread only.
class AskModel : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  // The question being typed

  const QString& question() const { return question_; }
  void setQuestion(const QString& question);
  /// The one asked last, to be brought back; empty before the first.
  const QString& lastQuestion() const { return lastQuestion_; }

  // The transcript

  /// Oldest first.
  const std::vector<AskExchange>& exchanges() const { return exchanges_; }
  /// The answer of the last exchange.
  std::optional<QString> latestAnswer() const;
  /// The question that is being answered, absent when idle.
  const std::optional<QString>& pending() const { return pending_; }
  /// Of the images that went along with it.
  const std::vector<QImage>& pendingThumbnails() const { return pendingThumbnails_; }
  /// As much of the answer to it as has arrived.
  const QString& partialAnswer() const { return partialAnswer_; }
  /// What arrived of an answer before it failed, with its question: shown until the next one, and no part of the
  /// transcript.
  const std::optional<AskExchange>& brokenOff() const { return brokenOff_; }
  const std::optional<QString>& errorMessage() const { return errorMessage_; }
  /// Something that is no answer went wrong.
  void setErrorMessage(const QString& message);
  /// True for a short while after an answer was copied.
  bool copied() const { return copied_; }
  void setCopied(bool copied);

  // The course of a question

  /// What is typed becomes the question to be answered, and the field empty.
  virtual void begin() { begin({}); }
  void grow(const QString& answerSoFar);
  virtual void finish(const QString& answer);
  /// The question goes back into the field, unless something else has been typed there.
  virtual void fail(const QString& message);
  /// Nobody waits for the answer any more; the question goes back as well.
  virtual void abandon();
  /// Forgets the conversation.
  virtual void reset();

 Q_SIGNALS:
  void changed();
  /// Only the partial answer has changed.
  void answerGrew();

 protected:
  /// `thumbnails`: of the images that go along.
  void begin(std::vector<QImage> thumbnails);

 private:
  void giveBack();

  QString question_;
  QString lastQuestion_;
  std::vector<AskExchange> exchanges_;
  std::optional<QString> pending_;
  std::vector<QImage> pendingThumbnails_;
  QString partialAnswer_;
  std::optional<AskExchange> brokenOff_;
  std::optional<QString> errorMessage_;
  bool copied_ = false;
};
