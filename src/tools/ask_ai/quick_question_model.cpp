#include "tools/ask_ai/quick_question_model.h"

#include <utility>

void QuickQuestionModel::attach(AskAttachment attachment) {
  if (!canAttach()) return;
  attachment.id = ++lastID_;
  attachments_.push_back(std::move(attachment));
  Q_EMIT changed();
}

void QuickQuestionModel::detach(int id) {
  if (std::erase_if(attachments_, [id](const AskAttachment& one) { return one.id == id; }) > 0) Q_EMIT changed();
}

std::vector<QByteArray> QuickQuestionModel::images() const {
  std::vector<QByteArray> images;
  for (const AskAttachment& attachment : attachments_) images.push_back(attachment.png);
  return images;
}

void QuickQuestionModel::begin() {
  sent_ = std::exchange(attachments_, {});
  std::vector<QImage> thumbnails;
  for (const AskAttachment& attachment : sent_) thumbnails.push_back(attachment.thumbnail);
  AskModel::begin(std::move(thumbnails));
}

void QuickQuestionModel::finish(const QString& answer) {
  sent_.clear();
  AskModel::finish(answer);
}

void QuickQuestionModel::fail(const QString& message) {
  giveBackAttachments();
  AskModel::fail(message);
}

void QuickQuestionModel::abandon() {
  giveBackAttachments();
  AskModel::abandon();
}

void QuickQuestionModel::reset() {
  attachments_.clear();
  sent_.clear();
  AskModel::reset();
}

/// Nothing can be attached while a question is being answered, so there is room.
void QuickQuestionModel::giveBackAttachments() { attachments_ = std::exchange(sent_, {}); }
