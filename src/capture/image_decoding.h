#pragma once

#include <QByteArray>
#include <QImage>

/// The first picture in an encoded image, upright; null when it is damaged, no kind of picture that is made of pixels,
/// or has more than 100 million of them. What it is decides its first bytes, not its name. Any thread; a large one
/// takes a second.
QImage decodedImage(const QByteArray& bytes);
/// The kind of picture that these bytes begin as ("png", "jpeg"); empty for anything that `decodedImage` does not know.
QByteArray pixelFormat(const QByteArray& bytes);
/// Whether these are the first bytes of a PNG.
bool isPNG(const QByteArray& bytes);
