#pragma once

#include <expected>

#include "cli/command.h"
#include "services/clipboard_image.h"

/// The image in the file that `word` names, or in standard input for "-": what every browser shows as it is, anything
/// else as a PNG. Errors are a reason to be put behind the word.
std::expected<ClipboardImage, QString> readImage(const QString& word, const CommandContext& context);
/// The same as a PNG, whatever it was.
std::expected<QByteArray, QString> readPNG(const QString& word, const CommandContext& context);
