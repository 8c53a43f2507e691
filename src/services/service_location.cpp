#include "services/service_location.h"

#include <algorithm>
#include <array>

#include "services/base_url.h"

using namespace Qt::StringLiterals;

namespace {

struct Row {
  ServiceOperation operation;
  QUrl ServiceLocation::* service;
  QLatin1StringView path;
};

constexpr std::array kOperations = {
    Row{ServiceOperation::image, &ServiceLocation::links, "/v1/images"_L1},
    Row{ServiceOperation::prompt, &ServiceLocation::links, "/ai-prompt"_L1},
    Row{ServiceOperation::question, &ServiceLocation::api, "/v1/answers"_L1},
    Row{ServiceOperation::text, &ServiceLocation::api, "/v1/text"_L1},
    Row{ServiceOperation::imageQuestion, &ServiceLocation::api, "/v1/image-answers"_L1},
    Row{ServiceOperation::suggestion, &ServiceLocation::api, "/v1/tool-suggestions"_L1},
    Row{ServiceOperation::feedback, &ServiceLocation::api, "/v1/feedback"_L1},
    Row{ServiceOperation::event, &ServiceLocation::api, "/v1/events"_L1},
    Row{ServiceOperation::quota, &ServiceLocation::api, "/v1/quota"_L1},
    Row{ServiceOperation::upload, &ServiceLocation::links, "/v1/upload"_L1},
    Row{ServiceOperation::imageGeneration, &ServiceLocation::api, "/v1/image-generate"_L1},
};

}  // namespace

std::expected<QUrl, ServiceError> ServiceLocation::url(ServiceOperation operation) const {
  const auto row = std::ranges::find(kOperations, operation, &Row::operation);
  const QUrl& base = this->*row->service;
  if (!base.isEmpty()) return below(base, row->path);
  const QString missing = row->service == &ServiceLocation::api ? u"API"_s : u"links"_s;
  return std::unexpected(ServiceError{ServiceError::Reason::configuration,
                                      u"The %1 URL of your service is not set (Settings → General)."_s.arg(missing)});
}
