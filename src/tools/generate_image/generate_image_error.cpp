#include "tools/generate_image/generate_image_error.h"

#include "services/service_error.h"

using namespace Qt::StringLiterals;

GenerateImageError GenerateImageError::of(const MeteredFailure& failure) {
  if (const auto* status = std::get_if<MeteredError>(&failure))
    return {Reason::badStatus, status->status, status->body, {}};
  const bool isQuota = std::holds_alternative<QuotaExceededError>(failure);
  return {isQuota ? Reason::quota : Reason::other, 0, {}, ::description(failure)};
}

QString GenerateImageError::description() const {
  switch (reason) {
    case Reason::badStatus:
      return httpFailure(u"Generation failed"_s, {status, {}, body});
    case Reason::noImage:
      return u"No image in response: "_s + beginning(body);
    case Reason::damagedImage:
      return u"The service sent an image that is damaged or too large."_s;
    case Reason::quota:
    case Reason::other:
      break;
  }
  return detail;
}
