#include "base/visible_text.h"

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kEscapes = {
    std::pair{U'\n', "\\n"_L1},
    std::pair{U'\r', "\\r"_L1},
    std::pair{U'\t', "\\t"_L1},
};

/// Marks, embeddings, overrides and isolates: they would make a command read other than it runs.
bool turnsDirection(char32_t character) {
  switch (QChar::direction(character)) {
    case QChar::DirLRE:
    case QChar::DirLRO:
    case QChar::DirRLE:
    case QChar::DirRLO:
    case QChar::DirPDF:
    case QChar::DirLRI:
    case QChar::DirRLI:
    case QChar::DirFSI:
    case QChar::DirPDI:
      return true;
    default:
      return character == U'\u200e' || character == U'\u200f' || character == U'\u061c';
  }
}

bool isHidden(char32_t character) {
  switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
      return true;
    default:
      return turnsDirection(character);
  }
}

QString spelledOut(char32_t character) {
  for (const auto& [control, escape] : kEscapes)
    if (control == character) return escape;
  return u"\\u{%1}"_s.arg(static_cast<uint>(character), 0, 16);
}

/// The code point at `index`, which moves behind it; half of a pair is returned as it stands.
char32_t nextCodePoint(QStringView text, qsizetype& index) {
  const QChar unit = text[index++];
  if (!unit.isHighSurrogate() || index == text.size() || !text[index].isLowSurrogate()) return unit.unicode();
  return QChar::surrogateToUcs4(unit, text[index++]);
}

}  // namespace

QString visibleLine(const QString& text, qsizetype limit) {
  QString line;
  const bool cut = text.size() > limit;
  for (qsizetype index = 0; index < std::min(text.size(), limit);) {
    const char32_t character = nextCodePoint(text, index);
    if (isHidden(character))
      line += spelledOut(character);
    else
      line += QChar::fromUcs4(character);
  }
  return cut ? line + u'…' : line;
}
