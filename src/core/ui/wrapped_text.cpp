#include "core/ui/wrapped_text.h"

#include <QFontMetrics>
#include <QTextLayout>

#include <algorithm>

namespace {

/// Characters a line can hold at most, with room to spare: nobody sets text narrower than a pixel a character.
QString visiblePart(const QString& text, int width, int maximumLines) {
  const qsizetype most = qsizetype{std::max(width, 1)} * (maximumLines + 1);
  return text.size() > most ? text.left(most) : text;
}

QString flattened(QString text) { return text.replace(QChar::LineSeparator, QChar::Space).trimmed(); }

}  // namespace

QStringList wrappedLines(const QString& text, const QFont& font, int width, int maximumLines) {
  QString shown = visiblePart(text, width, maximumLines).trimmed();
  if (shown.isEmpty()) return {};
  shown.replace(QStringLiteral("\r\n"), QString(QChar::LineSeparator));
  shown.replace(QLatin1Char('\n'), QChar::LineSeparator).replace(QLatin1Char('\t'), QChar::Space);
  QTextLayout layout(shown, font);
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  QStringList lines;
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid() && lines.size() < maximumLines;
       line = layout.createLine()) {
    line.setLineWidth(width);
    const bool isCut = lines.size() + 1 == maximumLines && line.textStart() + line.textLength() < shown.size();
    const QString rest = isCut ? shown.mid(line.textStart()) : shown.mid(line.textStart(), line.textLength());
    // With the ellipsis even where the rest would just fit in one line: it was broken for a reason.
    lines.append(isCut ? QFontMetrics(font).elidedText(flattened(rest), Qt::ElideRight, width) : flattened(rest));
  }
  layout.endLayout();
  return lines;
}

int balancedWidth(const QString& text, const QFont& font, int width, int maximumLines) {
  const QStringList lines = wrappedLines(text, font, width, maximumLines);
  // What is cut short needs all the room there is.
  if (lines.size() < 2 || lines.last().endsWith(QChar(0x2026))) return width;
  int narrow = width / 2;
  int wide = width;
  while (wide - narrow > 4) {
    const int middle = (narrow + wide) / 2;
    const QStringList tried = wrappedLines(text, font, middle, maximumLines + 1);
    (tried.size() > lines.size() ? narrow : wide) = middle;
  }
  return wide;
}
