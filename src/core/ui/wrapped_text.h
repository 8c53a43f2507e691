#pragma once

#include <QFont>
#include <QString>
#include <QStringList>

/// Breaks `text` into at most `maximumLines` lines of at most `width` pixels; the last one ends in an ellipsis when
/// there is more. Line breaks in the text are kept. Only as much of a long text is looked at as can show.
QStringList wrappedLines(const QString& text, const QFont& font, int width, int maximumLines);

/// The smallest width, down to half of `width`, at which `text` needs no more lines than at `width`: lines of about the
/// same length look better than a full one and a single word.
int balancedWidth(const QString& text, const QFont& font, int width, int maximumLines);
