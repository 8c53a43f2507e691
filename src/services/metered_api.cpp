#include "services/metered_api.h"

#include "services/bearer.h"

void MeteredAPI::locate(const JobRef& job, Answer<ServiceLocation> answer) {
  auto hosts = configuration_.hosts();
  if (configuration_.mode() == ServiceMode::builtIn)
    builtIn_.locate(job, std::move(answer));
  else
    job.later([answer = std::move(answer), hosts = std::move(hosts)] { answer(hosts); });
}

void MeteredAPI::authorization(const ServiceLocation& location, const JobRef& job, Answer<QByteArray> answer) {
  if (location.isBuiltIn) {
    answer(bearer(location.serviceToken));
    return;
  }
  credential_.read(job, [answer = std::move(answer)](const auto& secret) {
    if (secret)
      answer(bearer(*secret));
    else
      answer(std::unexpected(ServiceError::of(secret.error())));
  });
}

void MeteredAPI::authorize(const JobRef& job, Answer<MeteredAccess> answer) {
  locate(job, [this, job, answer = std::move(answer)](const auto& location) {
    if (!location) {
      answer(std::unexpected(location.error()));
      return;
    }
    authorization(*location, job, [answer, place = *location](const auto& value) {
      if (value)
        answer(MeteredAccess{place, *value});
      else
        answer(std::unexpected(value.error()));
    });
  });
}
