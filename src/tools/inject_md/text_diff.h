#pragma once

#include <QString>

#include <vector>

/// One line of a comparison, or how many unchanged ones are left out there.
struct DiffLine {
  enum class Kind { same, removed, added, omission };

  Kind kind = Kind::same;
  QString text;

  bool operator==(const DiffLine&) const = default;
};

/// How one text differs from another, in lines. Line ends are no part of a line: they are told apart by themselves.
struct TextDiff {
  enum class LastEnd { same, added, removed };

  qsizetype added = 0;
  qsizetype removed = 0;
  /// A line that stays ends otherwise, with "\r\n" say.
  bool changesLineEnds = false;
  LastEnd lastEnd = LastEnd::same;
  /// What changes, with two lines around it; 500 at most.
  std::vector<DiffLine> lines;

  bool operator==(const TextDiff&) const = default;
  /// "adds 3 lines, removes 1 line", or that nothing changes.
  QString description() const;
};

/// Takes time and memory in proportion to the texts' lines: between the common beginning and end of two long texts, all
/// lines count as replaced.
TextDiff textDiff(const QString& before, const QString& after);

/// "1 line", "2 lines".
QString countedLines(qsizetype count);
