#pragma once

#include <QFont>
#include <QString>
#include <QStringList>

/// Breaks `text` into at most `maximumLines` lines of at most `width` pixels; the last one ends in an ellipsis when
/// there is more. Line breaks in the text are kept. Only as much of a long text is looked at as can show.
QStringList wrappedLines(const QString& text, const QFont& font, int width, int maximumLines);
