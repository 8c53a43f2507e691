#pragma once

#include "services/clipboard_image.h"
#include "services/environments.h"
#include "tools/image_to_prompt/prompt_mode.h"
#include "tools/image_to_prompt/promptify_error.h"

/// Asks the link-hosting service for the prompt behind an image. Main thread only.
class PromptifyClient {
 public:
  using Done = std::function<void(std::expected<QString, PromptifyError>)>;

  PromptifyClient(Environments& environments, HttpClient& http) : environments_(environments), http_(http) {}

  /// At the service of this moment; starts the built-in one when that is asked.
  void reverseEngineer(const ClipboardImage& image, PromptMode mode, const JobRef& job, Done done);
  void reverseEngineer(const ClipboardImage& image, PromptMode mode, const PromptifyEnvironment& environment,
                       const JobRef& job, Done done);

  /// The prompt in the body of an answer; nothing when there is none.
  static std::optional<QString> extractPrompt(const QByteArray& body);

 private:
  Environments& environments_;
  HttpClient& http_;
};

/// A picture of one pixel, for finding out whether prompts are made.
ClipboardImage promptifyTestImage();
