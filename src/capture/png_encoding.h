#pragma once

#include <QByteArray>
#include <QImage>

/// The picture as an opaque PNG, compressed quickly rather than small; empty when that failed. Any thread.
QByteArray pngOf(const QImage& pixels);
/// The same with the transparency that the picture has. Any thread.
QByteArray pngWithTransparency(const QImage& pixels);
