#pragma once

#include "service/ai/ai_exchange.h"

/// POST /v1/answers: {"question", "history"?} → {"answer"}.
class AnswerExchange final : public AIExchange {
 public:
  AnswerExchange(const AIServices& services, const Request& request);

  void take(std::string_view bytes) override { body_.append(bytes.data(), static_cast<qsizetype>(bytes.size())); }

 private:
  std::expected<void, Response> read() override;
  Answered<QJsonObject> work(Provider& provider, const AICall& call) override;

  QByteArray body_;
  Question question_;
};

/// POST /v1/image-answers: a form with up to six pictures, "question" and "history" → {"answer"}.
class ImageAnswerExchange final : public AIExchange {
 public:
  ImageAnswerExchange(const AIServices& services, const Request& request, const QByteArray& boundary);

  void take(std::string_view bytes) override { form_.take(bytes); }

 private:
  std::expected<void, Response> read() override;
  Answered<QJsonObject> work(Provider& provider, const AICall& call) override;

  PictureForm form_;
  Question question_;
};
