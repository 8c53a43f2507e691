#include "services/built_in_service.h"

using namespace Qt::StringLiterals;

void BuiltInService::locate(const JobRef& job, Answer answer) {
  job.later([answer = std::move(answer)] {
    answer(std::unexpected(ServiceError{ServiceError::Reason::configuration,
                                        u"The built-in service did not come with this Vantle. Set hosts of your own "
                                        u"in Settings → General."_s}));
  });
}
