#pragma once

#include <QString>

/// `text` as one word for any POSIX shell: in single quotes, each single quote inside written as '\''.
inline QString shellQuote(QString text) {
  return QLatin1Char('\'') + text.replace(QLatin1Char('\''), QStringLiteral("'\\''")) + QLatin1Char('\'');
}
