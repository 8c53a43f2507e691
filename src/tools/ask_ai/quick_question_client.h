#pragma once

#include "tools/asking/answer_client.h"
#include "tools/asking/ask_exchange.h"

using QuickQuestionError = AskError;

/// Has questions answered, by two requests: a plain one, and one for questions with images. Main thread only.
class QuickQuestionClient {
 public:
  explicit QuickQuestionClient(const AnswerClient::Services& services) : answers_(services) {}

  /// `images`: PNGs, in the order of their attachment.
  void ask(const AskQuestion& question, const std::vector<QByteArray>& images, const AskCall& call);

 private:
  AnswerClient answers_;
};
