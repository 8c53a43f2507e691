#pragma once

#include <QString>

/// `text` as one word of a line that is handed to a shell and seen by no terminal: in single quotes, each single quote
/// inside written as '\''. So is a backslash where fish, unlike the other shells, would take it for an escape.
QString singleQuoted(const QString& text);

/// `text` as one word for any shell that the user may have in a terminal: quoted as above. Control characters are
/// spelled out for printf: typed as they are, a terminal would obey them.
QString shellQuote(const QString& text);
