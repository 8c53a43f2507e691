#include "tools/session_history/prompt_text.h"

#include <QTextBoundaryFinder>

using namespace Qt::StringLiterals;

namespace {

QString firstCharacters(const QString& text, int count) {
  if (text.size() <= count) return text;
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
  for (int passed = 0; passed < count; ++passed)
    if (finder.toNextBoundary() < 0) return text;
  return text.left(finder.position());
}

}  // namespace

QString shortLine(const QString& text, int longest) { return firstCharacters(text.simplified(), longest); }

std::optional<QString> cleanPrompt(const QString& prompt, int longest) {
  const QString line = prompt.simplified();
  if (line.isEmpty() || line.startsWith(u'<') || line.startsWith("Caveat:"_L1)) return std::nullopt;
  return firstCharacters(line, longest);
}

QString firstPrompt(const QStringList& texts, int longest) {
  for (const QString& text : texts)
    if (const auto prompt = cleanPrompt(text, longest)) return *prompt;
  return {};
}

QString codexRequest(const QString& prompt) {
  const QString heading = u"## My request for Codex:"_s;
  const qsizetype at = prompt.indexOf(heading);
  return at < 0 ? prompt : prompt.mid(at + heading.size());
}
