#include "platform/xdg/desktop_entry.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

QChar unescaped(QChar letter) {
  switch (letter.unicode()) {
    case 's':
      return u' ';
    case 'n':
      return u'\n';
    case 't':
      return u'\t';
    case 'r':
      return u'\r';
    default:
      return letter;
  }
}

QString withoutEscapes(QStringView text) {
  QString result;
  for (qsizetype at = 0; at < text.size(); ++at) {
    const bool isEscape = text[at] == u'\\' && at + 1 < text.size();
    result += isEscape ? unescaped(text[++at]) : text[at];
  }
  return result;
}

}  // namespace

DesktopEntry::DesktopEntry(const QByteArray& text) {
  bool isOurs = false;
  for (const QString& line : QString::fromUtf8(text).split(u'\n')) {
    const QStringView trimmed = QStringView(line).trimmed();
    if (trimmed.startsWith(u'[')) isOurs = trimmed == u"[Desktop Entry]";
    const qsizetype equals = trimmed.indexOf(u'=');
    if (!isOurs || equals <= 0 || trimmed.startsWith(u'#')) continue;
    values_.insert(trimmed.first(equals).trimmed().toString(), withoutEscapes(trimmed.sliced(equals + 1).trimmed()));
  }
}

QString DesktopEntry::program() const {
  const QString exec = value(u"Exec"_s);
  QString program;
  bool isQuoted = false;
  for (qsizetype at = 0; at < exec.size(); ++at) {
    if (exec[at] == u'"') {
      isQuoted = !isQuoted;
      continue;
    }
    if (exec[at] == u' ' && !isQuoted) break;
    const bool isEscape = isQuoted && exec[at] == u'\\' && at + 1 < exec.size();
    program += exec[isEscape ? ++at : at];
  }
  return program.replace("%%"_L1, "%"_L1);
}

QString execArgument(const QString& path) {
  QString quoted;
  for (const QChar letter : path) {
    if (u"\"`$\\"_s.contains(letter)) quoted += u'\\';
    quoted += letter;
  }
  quoted.replace(u'%', "%%"_L1);
  // Strings have escapes of their own, which are taken off first.
  quoted.replace(u'\\', R"(\\)"_L1).replace(u'\n', R"(\n)"_L1).replace(u'\r', R"(\r)"_L1).replace(u'\t', R"(\t)"_L1);
  return u'"' + quoted + u'"';
}
