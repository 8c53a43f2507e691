#pragma once

#include "tools/asking/answer_client.h"
#include "tools/asking/ask_exchange.h"

using ImageAskError = AskError;

/// Has questions about one capture answered, which goes along with each of them. Main thread only.
class ImageAskClient {
 public:
  explicit ImageAskClient(const AnswerClient::Services& services) : answers_(services) {}

  /// `image`: a PNG.
  void ask(const AskQuestion& question, const QByteArray& image, const AskCall& call);

 private:
  AnswerClient answers_;
};
