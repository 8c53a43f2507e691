#include "base/shell_quote.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isControl(QChar character) { return character < u' ' || character == QChar(0x7f); }

QString inQuotes(QString text) { return u'\'' + text.replace(u'\'', "'\\''"_L1) + u'\''; }

/// What printf's %b makes the text of.
QString spelledForPrintf(const QString& text) {
  QString spelled;
  for (const QChar character : text) {
    if (isControl(character))
      spelled += u"\\0%1"_s.arg(character.unicode(), 3, 8, QChar(u'0'));
    else
      spelled += character == u'\\' ? u"\\\\"_s : QString(character);
  }
  return spelled;
}

}  // namespace

QString shellQuote(const QString& text) {
  if (std::ranges::none_of(text, isControl)) return inQuotes(text);
  return u"\"$(printf '%b' %1)\""_s.arg(inQuotes(spelledForPrintf(text)));
}
