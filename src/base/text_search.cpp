#include "base/text_search.h"

#include <QLocale>
#include <QTextBoundaryFinder>

#include <algorithm>

QString searchKey(const QString& text) {
  // Lower case first, by the locale's rules; folding then joins what lower case keeps apart (σ and ς).
  const QString folded = QLocale().toLower(text).toCaseFolded();
  return folded.normalized(QString::NormalizationForm_C);
}

QString withoutLastCharacter(QString text) {
  QTextBoundaryFinder boundaries(QTextBoundaryFinder::Grapheme, text);
  boundaries.toEnd();
  text.truncate(std::max<qsizetype>(boundaries.toPreviousBoundary(), 0));
  return text;
}
