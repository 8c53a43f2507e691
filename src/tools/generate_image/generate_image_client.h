#pragma once

#include "services/environments.h"
#include "services/quota_store.h"
#include "tools/generate_image/generated_image.h"
#include "tools/generate_image/image_request.h"

struct Services;

/// Has pictures made by the API service. Main thread only.
class GenerateImageClient {
 public:
  using Outcome = std::expected<GeneratedImage, GenerateImageError>;
  using Done = std::function<void(const Outcome&)>;

  static constexpr QLatin1StringView kMetric{"image_generate"};

  explicit GenerateImageClient(Services& services) : services_(services) {}

  /// Answers once, later. The end of `job` breaks it off, without an answer.
  void generate(const ImageRequest& request, const JobRef& job, const Done& done);

 private:
  using Authorized = std::function<void(std::expected<QByteArray, ServiceError>)>;

  /// The value of the header "Authorization": the override's token, else the user's own credential.
  void authorize(const GenerateImageEnvironment& environment, const JobRef& job, const Authorized& answer);
  void send(const HttpRequest& request, const JobRef& job, const Done& done);

  Services& services_;
};
