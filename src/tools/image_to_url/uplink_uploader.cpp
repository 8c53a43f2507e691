#include "tools/image_to_url/uplink_uploader.h"

#include "services/multipart.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// An answer that comes in drops would otherwise never be given up.
constexpr auto kAnswerLimit = 120s;

}  // namespace

void UplinkUploader::upload(const ClipboardImage& image, const JobRef& job, Done done) {
  environments_.current<UplinkEnvironment>(job, [this, image, job, done = std::move(done)](const auto& environment) {
    if (environment)
      upload(image, *environment, job, done);
    else
      done(std::unexpected(UplinkError::of(environment.error().description())));
  });
}

void UplinkUploader::upload(const ClipboardImage& image, const UplinkEnvironment& environment, const JobRef& job,
                            Done done) {
  HttpRequest request = Multipart::request(environment.endpoint, environment.token, image);
  request.answerDeadline = kAnswerLimit;
  http_.send(request, job, [done = std::move(done)](const auto& response) { done(linkIn(response)); });
}

ClipboardImage uplinkTestImage() {
  static constexpr char kPixel[] =
      "iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNkYPhfDwAChwGA60e6kgAAAABJRU5ErkJggg==";
  return {QByteArray::fromBase64(kPixel), u"uplink-test.png"_s, u"image/png"_s};
}
