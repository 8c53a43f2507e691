#pragma once

#include <QJsonValue>
#include <QString>

#include <optional>

/// Where a tool takes its image from.
enum class ImageSource {
  /// The image now on the clipboard.
  clipboard,
  /// A region that the user drags on the screen.
  liveSelection,
};

QString rawValue(ImageSource source);
/// None for a text that names no source.
std::optional<ImageSource> imageSource(const QString& rawValue);
bool decode(const QJsonValue& value, ImageSource& out);
