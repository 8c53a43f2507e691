#pragma once

#include "services/services.h"
#include "tools/text_transform/ai_text_transform_error.h"
#include "tools/text_transform/text_transform_mode.h"

/// Has the API service rewrite a text. Main thread only.
class AITextTransformClient {
 public:
  using Result = std::expected<QString, AITextTransformError>;
  using Done = std::function<void(const Result&)>;

  struct Order {
    /// As it was selected.
    QString text;
    TextTransformMode mode = TextTransformMode::improve;
    /// What to do with the text; only for the mode `custom`.
    std::optional<QString> instruction{};
  };

  explicit AITextTransformClient(Services& services) : services_(services) {}

  /// Answers once, later, within a minute after the service has been found. The end of `job` breaks the request off,
  /// without an answer.
  void transform(const Order& order, const JobRef& job, Done done);

  /// The transformed text in an answer.
  static std::optional<QString> extractText(const QByteArray& response);

 private:
  void send(const Order& order, const MeteredAccess& access, const JobRef& job, const Done& done);

  Services& services_;
};
