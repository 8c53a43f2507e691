#pragma once

#include "services/uplink_error.h"

/// The largest upload the service takes. Decimal megabytes, deliberately.
inline constexpr qint64 kMaximumUpload = 256'000'000;

/// Why there is no link.
class BulkUploadError {
 public:
  static BulkUploadError zipFailed(const QString& message);
  static BulkUploadError tooLarge(qint64 bytes);
  /// One of the items cannot be uploaded.
  static BulkUploadError unusable(const QString& name, const QString& reason);
  static BulkUploadError service(const UplinkError& error) { return {error.description(), false}; }

  /// Whether the same items would fail again.
  bool isAboutItems() const { return isAboutItems_; }
  const QString& description() const { return description_; }

 private:
  BulkUploadError(QString description, bool isAboutItems)
      : description_(std::move(description)), isAboutItems_(isAboutItems) {}

  QString description_;
  bool isAboutItems_;
};
