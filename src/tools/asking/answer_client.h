#pragma once

#include "services/environments.h"
#include "services/quota_store.h"
#include "tools/asking/answer_stream.h"

/// Who asked: the end of `job` breaks the question off, and nothing is told any more.
struct AskCall {
  JobRef job;
  /// Told of an answer that is still growing: all of it so far.
  std::function<void(const QString&)> grew;
  /// Told once, later.
  std::function<void(const AskOutcome&)> done;
};

/// Where questions go and the value of the header "Authorization" that they carry, empty: none.
struct AskPlace {
  QUrl endpoint;
  QByteArray authorization;
};

/// What is asked of a service, on the user's monthly allowance. Main thread only.
class AnswerClient {
 public:
  struct Services {
    Environments& environments;
    MeteredAPI& api;
    HttpClient& http;
    QuotaStore& quota;
  };
  /// Makes the request once it is known where it goes.
  using MakeRequest = std::function<HttpRequest(const AskPlace&)>;

  explicit AnswerClient(const Services& services) : services_(services) {}

  /// To where that environment's requests go at this moment; starts the built-in service when that is asked. `metric`:
  /// the service's name of the counter.
  template <class Environment>
  void ask(const QString& metric, const MakeRequest& makeRequest, const AskCall& call) {
    const auto go = [this, metric, makeRequest, call](const AskPlace& place) {
      send(metric, makeRequest(place), call);
    };
    services_.environments.current<Environment>(call.job, [this, go, call](const auto& environment) {
      if (environment) return authorize(*environment, call, go);
      call.done(std::unexpected(AskError::of(environment.error())));
    });
  }

 private:
  using Go = std::function<void(const AskPlace&)>;

  void authorize(const TokenEnvironment& environment, const AskCall& call, const Go& go);
  void send(const QString& metric, HttpRequest request, const AskCall& call);

  Services services_;
};

/// The headers of every question but its type.
void addAuthorization(HttpRequest& request, const AskPlace& place);
