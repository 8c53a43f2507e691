#pragma once

#include <QByteArray>
#include <QString>

#include "services/metered_error.h"

/// Why there is no image.
struct GenerateImageError {
  enum class Reason {
    /// The month's allowance is used up; `detail` is the whole text.
    quota,
    /// The service answered with another status that is no success.
    badStatus,
    /// It answered, without an image.
    noImage,
    /// It answered with something that is called an image and cannot be shown.
    damagedImage,
    /// There is no answer, or no service to ask; `detail` is the whole text.
    other,
  };
  Reason reason = Reason::other;
  int status = 0;
  QByteArray body{};
  QString detail{};

  static GenerateImageError of(const MeteredFailure& failure);
  static GenerateImageError of(const QString& text) { return {Reason::other, 0, {}, text}; }
  static GenerateImageError noImage(const QByteArray& body) { return {Reason::noImage, 0, body}; }
  static GenerateImageError damagedImage() { return {Reason::damagedImage}; }

  bool operator==(const GenerateImageError&) const = default;
  QString description() const;
};
