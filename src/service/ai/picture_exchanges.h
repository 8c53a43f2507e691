#pragma once

#include "service/ai/ai_exchange.h"

/// POST /ai-prompt: a form with a picture and "mode" → {"prompt"}. Not counted.
class PromptExchange final : public AIExchange {
 public:
  PromptExchange(const AIServices& services, const Request& request, const QByteArray& boundary);

  void take(std::string_view bytes) override { form_.take(bytes); }

 private:
  std::expected<void, Response> read() override;
  Answered<QJsonObject> work(Provider& provider, const AICall& call) override;

  PictureForm form_;
  Question question_;
};

/// POST /v1/image-generate: a form with "prompt", "size", "quality", "edit" and up to four pictures to go by →
/// {"images": [{"data", "mimeType"}]}.
class DrawExchange final : public AIExchange {
 public:
  DrawExchange(const AIServices& services, const Request& request, const QByteArray& boundary);

  void take(std::string_view bytes) override { form_.take(bytes); }

 private:
  std::expected<void, Response> read() override;
  Answered<QJsonObject> work(Provider& provider, const AICall& call) override;

  PictureForm form_;
  Drawing drawing_;
};
