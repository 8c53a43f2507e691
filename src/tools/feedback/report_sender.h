#pragma once

#include <vector>

#include "platform/system_info.h"
#include "services/environments.h"
#include "services/multipart.h"
#include "services/user_credential.h"
#include "tools/feedback/report_error.h"

/// What feedback and suggestions have in common on their way: the versions, the snips, and who they are from. Main
/// thread only.
class ReportSender {
 public:
  struct Services {
    Environments& environments;
    UserCredential& credential;
    HttpClient& http;
    const SystemInfo& system;
  };
  struct Report {
    Multipart::Fields fields;
    /// PNGs, in their order.
    std::vector<QByteArray> snips;
  };
  /// Any success of the service is one; what it says besides is not read.
  using Done = std::function<void(std::expected<void, ReportError>)>;

  explicit ReportSender(Services services) : services_(services) {}

  /// To where `Environment` says at this moment; starts the built-in service when that is asked.
  template <class Environment>
  void send(const Report& report, const JobRef& job, Done done) {
    services_.environments.current<Environment>(job, [this, report, job, done = std::move(done)](const auto& found) {
      if (found)
        this->send(report, *found, job, done);
      else
        done(std::unexpected(ReportError::of(found.error().description())));
    });
  }
  void send(const Report& report, const TokenEnvironment& environment, const JobRef& job, Done done);

 private:
  HttpRequest request(const Report& report, const TokenEnvironment& environment) const;

  Services services_;
};
