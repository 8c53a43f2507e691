#pragma once

#include "services/metered_error.h"
#include "services/service_error.h"
#include "services/told_error.h"

/// Why there is no image.
class GenerateImageError : public ToldError<GenerateImageError> {
 public:
  using ToldError::of;
  static GenerateImageError of(const MeteredFailure& failure);
  /// The service answered, without an image.
  static GenerateImageError noImage(const QByteArray& body);
  /// It answered with something that is called an image and cannot be shown.
  static GenerateImageError damagedImage();

 private:
  using ToldError::ToldError;
};
