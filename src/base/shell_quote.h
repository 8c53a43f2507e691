#pragma once

#include <QString>

/// `text` as one word for any shell that the user may have in a terminal: in single quotes, each single quote inside
/// written as '\''. Control characters are spelled out for printf: typed as they are, a terminal would obey them.
QString shellQuote(const QString& text);
