#pragma once

#include <QString>

/// Stands before the language of code blocks; no character that a text can hold.
inline constexpr QChar kFenceMark{0xFDD2};

/// `markdown` so that QTextDocument reads its code blocks as they are meant. It makes one of two that follow each other
/// unless their languages differ: every second of a row is marked. Below the words of a list's item it takes the lines
/// of one for items, and the next item for code: an empty line goes before it.
QString withFenceMarks(const QString& markdown);
