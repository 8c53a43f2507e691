#pragma once

#include "tools/ask_ai/ask_attachment.h"
#include "tools/asking/ask_model.h"

/// A conversation with images. Main thread only.
class QuickQuestionModel final : public AskModel {
  Q_OBJECT

 public:
  static constexpr std::size_t kMostAttachments = 6;

  using AskModel::AskModel;

  const std::vector<AskAttachment>& attachments() const { return attachments_; }
  /// Whether another image may be attached now.
  bool canAttach() const { return attachments_.size() < kMostAttachments && !pending(); }
  /// Does nothing when none may be attached.
  void attach(AskAttachment attachment);
  void detach(int id);
  std::vector<QByteArray> images() const;

  void begin() override;
  void finish(const QString& answer) override;
  void fail(const QString& message) override;
  void abandon() override;
  void reset() override;

 private:
  void giveBackAttachments();

  std::vector<AskAttachment> attachments_;
  /// With the question that is being answered.
  std::vector<AskAttachment> sent_;
  int lastID_ = 0;
};
