#pragma once

#include "service/ai/ai_exchange.h"

/// POST /v1/text: {"text", "action" or "instruction"} → {"text"}; neither of the two: it is improved.
class TextExchange final : public AIExchange {
 public:
  TextExchange(const AIServices& services, const Request& request);

  void take(std::string_view bytes) override { body_.append(bytes.data(), static_cast<qsizetype>(bytes.size())); }

 private:
  std::expected<void, Response> read() override;
  Answered<QJsonObject> work(Provider& provider, const AICall& call) override;

  QByteArray body_;
  QString text_;
  Question question_;
};

/// `answer` as it goes in the place of `text`: without the fence, the quotation marks or the tags that providers like
/// to put around it, with the white space that `text` begins and ends with.
QString inPlaceOf(const QString& text, const QString& answer);
