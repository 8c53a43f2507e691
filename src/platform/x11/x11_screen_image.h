#pragma once

#include <QImage>
#include <QRect>
#include <QString>

#include <expected>

/// The pixels of a rectangle of the root window, eight bits a colour, what lies beside the root cut off; without the
/// pointer. Through memory shared with the server where that is on this machine. Over a connection of its own, so on
/// any thread; the image owns its pixels. The error says why there is none.
std::expected<QImage, QString> x11ScreenImage(const QRect& pixels);
