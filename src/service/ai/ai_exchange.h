#pragma once

#include <QJsonObject>

#include "service/accounts/quota.h"
#include "service/ai/desk.h"
#include "service/ai/picture_form.h"
#include "service/ai/provider_slot.h"
#include "service/http/endpoint.h"

/// What the endpoints that ask a provider share.
struct AIServices {
  ProviderSlot& providers;
  Desk& desk;
  /// Where the database is waited for.
  Workers& workers;
  Quota& quota;
  PictureRoom& room;
  /// No answer is waited for longer.
  std::chrono::seconds longest;
};

/// One request that a provider is asked for: reserves its unit of the quota, asks, counts it when there is an answer,
/// and answers at once or, for clients that take a stream of events, in pieces as they come.
class AIExchange : public Exchange {
 public:
  struct Terms {
    /// Empty: it is not counted.
    QString metric;
    /// From the end of the request on; shorter than clients wait.
    std::chrono::seconds limit{55};
    bool mayStream = false;
  };

  AIExchange(const AIServices& services, Terms terms, const Request& request);

  void answer(const Reply& reply) final;

 protected:
  /// The body is whole. Error: what is wrong with it.
  virtual std::expected<void, Response> read() = 0;
  /// The answer's object. On a thread of the desk.
  virtual Answered<QJsonObject> work(Provider& provider, const AICall& call) = 0;
  const AIServices& services() const { return services_; }

 private:
  class Delivery;

  void reserve(const Reply& reply);
  void run(const Reply& reply);
  void turnAway(const Reply& reply);
  void succeed(const QJsonObject& answer, Delivery& delivery);
  void fail(const AIError& error, Delivery& delivery);
  /// The headers of the counter, if it is counted.
  Response described(Response response) const;

  AIServices services_;
  Terms terms_;
  std::chrono::seconds limit_;
  Caller caller_;
  std::stop_token gone_;
  bool isStream_;
  std::chrono::steady_clock::time_point deadline_;
  std::shared_ptr<Provider> provider_;
  std::optional<Quota::Reservation> reservation_;
  std::optional<Standing> standing_;
};
