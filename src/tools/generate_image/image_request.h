#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

#include "tools/generate_image/image_options.h"

/// One picture to be made.
struct ImageRequest {
  QString prompt;
  ImageOptions options;
  /// Whether the first of `references` is to be changed, instead of a new picture being made.
  bool isEdit = false;
  /// As PNG, at most `kMostReferences`.
  std::vector<QByteArray> references;

  static constexpr std::size_t kMostReferences = 4;

  bool operator==(const ImageRequest&) const = default;
};
