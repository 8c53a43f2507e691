#pragma once

#include <QWidget>

#include "tools/ask_ai/quick_question_model.h"

class QHBoxLayout;

/// The images that go along with a question, small and in a row; pressing one takes it away, and so does Delete.
class AttachmentStrip : public QWidget {
  Q_OBJECT

 public:
  explicit AttachmentStrip(QuickQuestionModel& model, QWidget* parent = nullptr);

 private:
  void follow();

  QuickQuestionModel& model_;
  QHBoxLayout* row_;
  std::vector<int> shown_;
};
