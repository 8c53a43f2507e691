#pragma once

#include <QString>

/// A text as one line that hides nothing: control characters, characters that turn the reading direction and halves of
/// surrogate pairs are spelled out ("\n", "\u{1b}"). Only the first `limit` UTF-16 units are looked at, with "…" for
/// the rest, so that a huge text costs no more than a short one.
QString visibleLine(const QString& text, qsizetype limit);
