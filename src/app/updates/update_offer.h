#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <expected>
#include <optional>

/// A version that can be downloaded. A plain value.
struct UpdateOffer {
  QString version;
  QUrl url;
  /// SHA-256, 32 bytes.
  QByteArray digest;
  qint64 bytes = 0;

  /// The longest download that is taken.
  static constexpr qint64 kLargest = 512'000'000;

  /// What `description` (JSON: "version", "file", "sha256" in hexadecimal, "bytes") at `address` offers to who runs
  /// `running`; the file lies beside it. None when that is not newer. Error: a sentence without its full stop on what
  /// does not fit.
  static std::expected<std::optional<UpdateOffer>, QString> read(const QByteArray& description, const QUrl& address,
                                                                 const QString& running);

  bool operator==(const UpdateOffer&) const = default;
};
