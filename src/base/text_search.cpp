#include "base/text_search.h"

#include <QLocale>

QString searchKey(const QString& text) {
  // Lower case first, by the locale's rules; folding then joins what lower case keeps apart (σ and ς).
  const QString folded = QLocale().toLower(text).toCaseFolded();
  return folded.normalized(QString::NormalizationForm_C);
}
