#include "service/http/endpoint.h"

namespace {

class SimpleExchange final : public Exchange {
 public:
  SimpleExchange(SimpleEndpoint& endpoint, const Request& request) : endpoint_(endpoint), request_(request) {}

  void take(std::string_view bytes) override { body_.append(bytes.data(), static_cast<qsizetype>(bytes.size())); }
  void answer(const Reply& reply) override { endpoint_.answer(request_, body_, reply); }

 private:
  SimpleEndpoint& endpoint_;
  Request request_;
  QByteArray body_;
};

}  // namespace

std::expected<std::unique_ptr<Exchange>, Response> SimpleEndpoint::begin(const Request& request) {
  return std::make_unique<SimpleExchange>(*this, request);
}
