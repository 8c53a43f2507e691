#include "tools/asking/image_question.h"

#include "services/multipart.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kTimeLimit = 90s;

}  // namespace

HttpRequest imageQuestion(const AskPlace& place, const AskQuestion& question,
                          const std::vector<ClipboardImage>& images) {
  Multipart::Fields fields{{u"question"_s, question.text}};
  if (const auto history = AskExchange::historyJSON(question.history)) fields[u"history"_s] = *history;
  const std::vector<ClipboardImage> additional(images.begin() + 1, images.end());
  HttpRequest request = Multipart::request(place.endpoint, {}, images.front(), additional, fields);
  addAuthorization(request, place);
  request.timeout = kTimeLimit;
  return request;
}
