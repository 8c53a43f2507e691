#include "tools/asking/ask_model.h"

#include <utility>

void AskModel::setQuestion(const QString& question) {
  if (question == question_) return;
  question_ = question;
  Q_EMIT changed();
}

std::optional<QString> AskModel::latestAnswer() const {
  return exchanges_.empty() ? std::nullopt : std::optional(exchanges_.back().answer);
}

void AskModel::setErrorMessage(const QString& message) {
  errorMessage_ = message;
  Q_EMIT changed();
}

void AskModel::setCopied(bool copied) {
  if (std::exchange(copied_, copied) != copied) Q_EMIT changed();
}

void AskModel::begin(std::vector<QImage> thumbnails) {
  lastQuestion_ = std::exchange(question_, {}).trimmed();
  pending_ = lastQuestion_;
  pendingThumbnails_ = std::move(thumbnails);
  partialAnswer_.clear();
  brokenOff_.reset();
  errorMessage_.reset();
  Q_EMIT changed();
}

void AskModel::grow(const QString& answerSoFar) {
  partialAnswer_ = answerSoFar;
  Q_EMIT answerGrew();
}

void AskModel::finish(const QString& answer) {
  exchanges_.push_back(
      {std::exchange(pending_, std::nullopt).value_or(QString()), answer, std::exchange(pendingThumbnails_, {})});
  partialAnswer_.clear();
  Q_EMIT changed();
}

void AskModel::fail(const QString& message) {
  if (!partialAnswer_.isEmpty()) brokenOff_ = {pending_.value_or(QString()), partialAnswer_, pendingThumbnails_};
  errorMessage_ = message;
  giveBack();
  Q_EMIT changed();
}

void AskModel::abandon() {
  giveBack();
  Q_EMIT changed();
}

void AskModel::giveBack() {
  const QString asked = std::exchange(pending_, std::nullopt).value_or(QString());
  pendingThumbnails_.clear();
  partialAnswer_.clear();
  if (question_.isEmpty()) question_ = asked;
}

void AskModel::reset() {
  question_.clear();
  exchanges_.clear();
  pending_.reset();
  pendingThumbnails_.clear();
  partialAnswer_.clear();
  brokenOff_.reset();
  errorMessage_.reset();
  Q_EMIT changed();
}
