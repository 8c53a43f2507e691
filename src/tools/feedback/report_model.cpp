#include "tools/feedback/report_model.h"

void ReportModel::setMessage(const QString& message) {
  if (!isEditable() || message == message_) return;
  message_ = message;
  Q_EMIT changed();
}

void ReportModel::addSnip(const QByteArray& png) {
  if (!canAddSnip()) return;
  snips_.push_back({++lastSnip_, png});
  Q_EMIT changed();
}

void ReportModel::removeSnip(int id) {
  if (!isEditable()) return;
  if (std::erase_if(snips_, [id](const FeedbackSnip& snip) { return snip.id == id; }) > 0) Q_EMIT changed();
}

void ReportModel::reset() {
  message_.clear();
  snips_.clear();
  enter(Phase::editing);
}

void ReportModel::enter(Phase phase, const QString& error) {
  phase_ = phase;
  error_ = error;
  Q_EMIT changed();
}

void FeedbackModel::select(FeedbackCategory category) {
  if (!isEditable() || category == category_) return;
  category_ = category;
  Q_EMIT changed();
}

void FeedbackModel::cycleCategory(bool forward) {
  const auto count = static_cast<int>(feedbackCategories().size());
  const int next = (static_cast<int>(category_) + (forward ? 1 : count - 1)) % count;
  select(static_cast<FeedbackCategory>(next));
}

void FeedbackModel::reset() {
  category_ = FeedbackCategory::bug;
  ReportModel::reset();
}
