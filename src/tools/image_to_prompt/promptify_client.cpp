#include "tools/image_to_prompt/promptify_client.h"

#include <array>

#include "services/answer_text.h"
#include "services/multipart.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// An answer that comes in drops would otherwise never be given up.
constexpr auto kAnswerLimit = 180s;
/// A prompt is a page or two.
constexpr qint64 kLongestAnswer = 512 * 1024;
constexpr std::array kMembers = {"prompt"_L1, "text"_L1, "description"_L1, "result"_L1};

std::expected<QString, PromptifyError> promptIn(const std::expected<HttpResponse, HttpError>& response) {
  if (!response) return std::unexpected(PromptifyError::of(response.error().description()));
  if (!response->isSuccess()) return std::unexpected(PromptifyError::badStatus(*response));
  if (auto prompt = PromptifyClient::extractPrompt(response->body)) return *std::move(prompt);
  return std::unexpected(PromptifyError::noPrompt(response->body));
}

}  // namespace

void PromptifyClient::reverseEngineer(const ClipboardImage& image, PromptMode mode, const JobRef& job, Done done) {
  environments_.current<PromptifyEnvironment>(job, [this, image, mode, job, done = std::move(done)](const auto& found) {
    if (found)
      reverseEngineer(image, mode, *found, job, done);
    else
      done(std::unexpected(PromptifyError::of(found.error().description())));
  });
}

void PromptifyClient::reverseEngineer(const ClipboardImage& image, PromptMode mode,
                                      const PromptifyEnvironment& environment, const JobRef& job, Done done) {
  HttpRequest request =
      Multipart::request(environment.endpoint, environment.token, image, {{u"mode"_s, info(mode).rawValue}});
  request.answerDeadline = kAnswerLimit;
  request.maximumAnswer = kLongestAnswer;
  http_.send(request, job, [done = std::move(done)](const auto& response) { done(promptIn(response)); });
}

std::optional<QString> PromptifyClient::extractPrompt(const QByteArray& body) {
  return textIn(body, kMembers, "prompt"_L1);
}

ClipboardImage promptifyTestImage() {
  static constexpr char kPixel[] =
      "iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR4nGP4z8DwHwAFAAH/iZk9HQAAAABJRU5ErkJggg==";
  return {QByteArray::fromBase64(kPixel), u"promptify-test.png"_s, u"image/png"_s};
}
