#pragma once

#include "services/clipboard_image.h"
#include "services/environments.h"
#include "services/uplink_error.h"

/// Sends one image to the link-hosting service. Main thread only.
class UplinkUploader {
 public:
  using Done = std::function<void(std::expected<QUrl, UplinkError>)>;

  UplinkUploader(Environments& environments, HttpClient& http) : environments_(environments), http_(http) {}

  /// To where images go at this moment; starts the built-in service when that is asked.
  void upload(const ClipboardImage& image, const JobRef& job, Done done);
  void upload(const ClipboardImage& image, const UplinkEnvironment& environment, const JobRef& job, Done done);

 private:
  Environments& environments_;
  HttpClient& http_;
};

/// A picture of one pixel, for finding out whether images can be sent.
ClipboardImage uplinkTestImage();
