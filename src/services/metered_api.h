#pragma once

#include <functional>

#include "services/built_in_service.h"
#include "services/service_configuration.h"
#include "services/user_credential.h"

/// Where a metered request goes and what it carries.
struct MeteredAccess {
  ServiceLocation location;
  /// The value of the header "Authorization"; empty: the request goes without it.
  QByteArray authorization;
};

/// The rules of requests that count against the user's monthly allowance. Main thread only.
class MeteredAPI {
 public:
  template <class Value>
  using Answer = std::function<void(std::expected<Value, ServiceError>)>;

  MeteredAPI(ServiceConfiguration& configuration, BuiltInService& builtIn, UserCredential& credential)
      : configuration_(configuration), builtIn_(builtIn), credential_(credential) {}

  /// Where the services are; starts the built-in one when it is to be used.
  void locate(const JobRef& job, Answer<ServiceLocation> answer);
  /// The value of the header "Authorization" for metered requests to `location`, empty without a credential: the
  /// user's; of the built-in service, the one it was started with.
  void authorization(const ServiceLocation& location, const JobRef& job, Answer<QByteArray> answer);
  /// Both.
  void authorize(const JobRef& job, Answer<MeteredAccess> answer);

 private:
  ServiceConfiguration& configuration_;
  BuiltInService& builtIn_;
  UserCredential& credential_;
};
