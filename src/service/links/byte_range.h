#pragma once

#include <QByteArray>

#include <optional>

/// A part of a file.
struct ByteRange {
  enum class Kind { whole, part, impossible };

  Kind kind = Kind::whole;
  qint64 offset = 0;
  qint64 size = 0;

  /// `header`: of the "Range" header. Several ranges at once and what is no range give the whole, as they may.
  static ByteRange of(const QByteArray& header, qint64 fileSize);
};
