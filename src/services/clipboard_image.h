#pragma once

#include <QByteArray>
#include <QString>

/// An encoded image with the name and media type it is sent under: what every image tool passes around.
struct ClipboardImage {
  QByteArray data;
  /// Chosen by whoever made it ("clipboard.png").
  QString filename;
  QString mimeType;

  bool operator==(const ClipboardImage&) const = default;
};
