#include "service/ai/ai_endpoints.h"

#include "service/ai/ask_exchanges.h"
#include "service/ai/picture_exchanges.h"
#include "service/ai/text_exchange.h"

namespace {

/// A text and a conversation, each character written as its number.
constexpr qint64 kLargestJson = 4'000'000;

/// An endpoint whose bodies are JSON.
template <class Work>
class JsonEndpoint final : public Endpoint {
 public:
  explicit JsonEndpoint(const AIServices& services) : services_(services) {}

  Access access() const override { return Access::person; }
  qint64 maximumBody() const override { return kLargestJson; }
  std::expected<std::unique_ptr<Exchange>, Response> begin(const Request& request) override {
    return std::make_unique<Work>(services_, request);
  }

 private:
  AIServices services_;
};

/// An endpoint whose bodies are forms with pictures.
template <class Work>
class FormEndpoint final : public Endpoint {
 public:
  FormEndpoint(const AIServices& services, Access access) : services_(services), access_(access) {}

  Access access() const override { return access_; }
  qint64 maximumBody() const override { return PictureForm::kLargest; }
  std::expected<std::unique_ptr<Exchange>, Response> begin(const Request& request) override {
    const auto boundary = MultipartReader::boundary(request.header("content-type"));
    if (!boundary) return std::unexpected(Response::text(415, "A form is wanted."));
    return std::make_unique<Work>(services_, request, *boundary);
  }

 private:
  AIServices services_;
  Access access_;
};

}  // namespace

void addAIEndpoints(Router& router, const AIServices& services) {
  constexpr auto kPerson = Endpoint::Access::person;
  router.add("POST", "/v1/answers", std::make_unique<JsonEndpoint<AnswerExchange>>(services));
  router.add("POST", "/v1/text", std::make_unique<JsonEndpoint<TextExchange>>(services));
  router.add("POST", "/v1/image-answers", std::make_unique<FormEndpoint<ImageAnswerExchange>>(services, kPerson));
  router.add("POST", "/v1/image-generate", std::make_unique<FormEndpoint<DrawExchange>>(services, kPerson));
  router.add("POST", "/ai-prompt",
             std::make_unique<FormEndpoint<PromptExchange>>(services, Endpoint::Access::anyCredential));
}
