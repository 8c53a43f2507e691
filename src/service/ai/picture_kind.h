#pragma once

#include <QByteArray>

/// The media type of a picture by its first bytes, of those kinds that providers look at: PNG, JPEG, GIF, WebP. Empty:
/// none of them.
QByteArray pictureType(const QByteArray& bytes);
/// The ending of a file's name for such a type, without the dot.
QByteArray pictureSuffix(const QByteArray& type);
