#include "base/shell_words.h"

namespace {

constexpr QStringView kEscapedInQuotes = u"\"\\$`\n";

}  // namespace

std::optional<QStringList> shellWords(const QString& line) {
  QStringList words;
  QChar quote;
  bool isInWord = false;
  bool isEscaped = false;
  for (const QChar character : line) {
    const bool begins = !isInWord && !character.isSpace();
    if (begins) words.append(QString());
    isInWord |= begins;
    if (isEscaped) {
      // Between double quotes it stands for itself before most characters.
      if (quote == u'"' && !kEscapedInQuotes.contains(character)) words.last() += u'\\';
      words.last() += character;
      isEscaped = false;
    } else if (character == u'\\' && quote != u'\'') {
      isEscaped = true;
    } else if (!quote.isNull() ? character == quote : character == u'\'' || character == u'"') {
      quote = quote.isNull() ? character : QChar();
    } else if (quote.isNull() && character.isSpace()) {
      isInWord = false;
    } else {
      words.last() += character;
    }
  }
  if (!quote.isNull() || isEscaped) return {};
  return words;
}
