#include "base/shell_quote.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Those above ASCII too: there are terminals that obey them.
bool isControl(QChar character) { return character.category() == QChar::Other_Control; }

/// What printf's %b makes the text of.
QString spelledForPrintf(const QString& text) {
  QString spelled;
  for (const QChar character : text) {
    if (isControl(character))
      for (const char byte : QString(character).toUtf8())
        spelled += u"\\0%1"_s.arg(static_cast<unsigned char>(byte), 3, 8, QChar(u'0'));
    else
      spelled += character == u'\\' ? u"\\\\"_s : QString(character);
  }
  return spelled;
}

}  // namespace

QString singleQuoted(const QString& text) {
  QString quoted(u'\'');
  for (qsizetype at = 0; at < text.size(); ++at) {
    const QChar next = at + 1 < text.size() ? text[at + 1] : QChar(u'\'');
    const bool escapesInFish = text[at] == u'\\' && (next == u'\\' || next == u'\'');
    if (text[at] == u'\'' || escapesInFish)
      quoted += u"'\\%1'"_s.arg(text[at]);
    else
      quoted += text[at];
  }
  return quoted + u'\'';
}

QString shellQuote(const QString& text) {
  if (std::ranges::none_of(text, isControl)) return singleQuoted(text);
  return u"\"$(printf '%b' %1)\""_s.arg(singleQuoted(spelledForPrintf(text)));
}
