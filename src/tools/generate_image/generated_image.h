#pragma once

#include <QByteArray>
#include <QImage>

#include <expected>

#include "core/net/http_client.h"
#include "tools/generate_image/generate_image_error.h"

/// A picture: whole, as PNG, and for the eye.
struct GeneratedImage {
  QByteArray png;
  /// At most `kShownEdge` pixels an edge.
  QImage picture;
  /// Of `png`, in pixels.
  QSize size;

  static constexpr int kShownEdge = 2048;
};

/// The longest answer that is taken, in bytes: the largest picture of a service in Base64, many times over.
inline constexpr qint64 kLargestGeneration = 64 * 1024 * 1024;

/// `bytes` as a picture, encoded anew unless it is a PNG; none when it cannot be decoded or has too many pixels. Takes
/// its time; any thread.
std::optional<GeneratedImage> asGeneratedImage(const QByteArray& bytes);

/// The image in an answer with a status of success: Base64 in one of the usual places of a JSON object, or the answer
/// itself. Takes its time; any thread.
std::expected<GeneratedImage, GenerateImageError> imageIn(const HttpResponse& response);
