#include "tools/inject_md/text_diff.h"

#include <QHash>
#include <QStringList>

#include <algorithm>
#include <cstdint>
#include <span>

using namespace Qt::StringLiterals;

namespace {

using Kind = DiffLine::Kind;
using IDs = std::span<const std::uint32_t>;

constexpr std::size_t kContext = 2;
constexpr std::size_t kMaximumShown = 500;
/// Of the table for the lines between the common beginning and end: 16 MB.
constexpr std::size_t kMaximumCells = 4'000'000;

struct Lines {
  std::vector<QStringView> texts;
  std::vector<bool> hasReturn;
  bool hasLastEnd = true;
};

/// The views look into `text`.
Lines split(const QString& text) {
  Lines lines;
  QStringView rest(text);
  while (!rest.isEmpty()) {
    const qsizetype end = rest.indexOf(u'\n');
    lines.hasLastEnd = end >= 0;
    QStringView line = lines.hasLastEnd ? rest.first(end) : rest;
    rest = lines.hasLastEnd ? rest.sliced(end + 1) : QStringView();
    lines.hasReturn.push_back(lines.hasLastEnd && line.endsWith(u'\r'));
    if (lines.hasReturn.back()) line.chop(1);
    lines.texts.push_back(line);
  }
  return lines;
}

/// Numbers that are equal for equal lines, which makes comparing cheap.
std::vector<std::uint32_t> numbered(const Lines& lines, QHash<QStringView, std::uint32_t>& numbers) {
  std::vector<std::uint32_t> ids;
  ids.reserve(lines.texts.size());
  for (const QStringView line : lines.texts) {
    const auto next = static_cast<std::uint32_t>(numbers.size());
    const auto found = numbers.constFind(line);
    ids.push_back(found == numbers.constEnd() ? *numbers.insert(line, next) : *found);
  }
  return ids;
}

/// The lengths of the longest common sequences of each end of `before` with each end of `after`.
class CommonLengths {
 public:
  CommonLengths(IDs before, IDs after) : width_(after.size() + 1), cells_((before.size() + 1) * width_) {
    for (std::size_t row = before.size(); row-- > 0;)
      for (std::size_t column = after.size(); column-- > 0;)
        cells_[row * width_ + column] = before[row] == after[column]
                                            ? at(row + 1, column + 1) + 1
                                            : std::max(at(row + 1, column), at(row, column + 1));
  }
  std::uint32_t at(std::size_t row, std::size_t column) const { return cells_[row * width_ + column]; }

 private:
  std::size_t width_;
  std::vector<std::uint32_t> cells_;
};

void appendShortestWay(IDs before, IDs after, std::vector<Kind>& steps) {
  const CommonLengths common(before, after);
  std::size_t row = 0;
  std::size_t column = 0;
  while (row < before.size() && column < after.size()) {
    if (before[row] == after[column]) {
      steps.push_back(Kind::same);
      ++row, ++column;
    } else if (common.at(row + 1, column) >= common.at(row, column + 1)) {
      steps.push_back(Kind::removed);
      ++row;
    } else {
      steps.push_back(Kind::added);
      ++column;
    }
  }
  steps.insert(steps.end(), before.size() - row, Kind::removed);
  steps.insert(steps.end(), after.size() - column, Kind::added);
}

/// What has to happen line by line to get from one text to the other.
std::vector<Kind> stepsBetween(IDs before, IDs after) {
  const auto first = std::ranges::mismatch(before, after);
  const auto start = static_cast<std::size_t>(first.in1 - before.begin());
  std::vector<Kind> steps(start, Kind::same);
  before = before.subspan(start);
  after = after.subspan(start);
  const auto last = std::mismatch(before.rbegin(), before.rend(), after.rbegin(), after.rend());
  const auto end = static_cast<std::size_t>(last.first - before.rbegin());
  before = before.first(before.size() - end);
  after = after.first(after.size() - end);
  if ((before.size() + 1) > kMaximumCells / (after.size() + 1)) {
    steps.insert(steps.end(), before.size(), Kind::removed);
    steps.insert(steps.end(), after.size(), Kind::added);
  } else {
    appendShortestWay(before, after, steps);
  }
  steps.insert(steps.end(), end, Kind::same);
  return steps;
}

/// The steps that change something and those close to one.
std::vector<bool> worthShowing(const std::vector<Kind>& steps) {
  std::vector<bool> shown(steps.size());
  for (std::size_t step = 0; step < steps.size(); ++step) {
    if (steps[step] == Kind::same) continue;
    const std::size_t begin = step - std::min(step, kContext);
    const std::size_t end = std::min(step + kContext + 1, steps.size());
    std::fill(shown.begin() + static_cast<std::ptrdiff_t>(begin), shown.begin() + static_cast<std::ptrdiff_t>(end),
              true);
  }
  return shown;
}

/// Walks along the steps and notes what is seen on the way.
class Walk {
 public:
  Walk(const Lines& before, const Lines& after, TextDiff& diff) : before_(before), after_(after), diff_(diff) {}

  void take(Kind kind, bool isShown) {
    const QStringView text = kind == Kind::added ? after_.texts[fresh_] : before_.texts[old_];
    if (kind == Kind::same && before_.hasReturn[old_] != after_.hasReturn[fresh_]) noteLineEnd();
    if (kind != Kind::added) ++old_;
    if (kind != Kind::removed) ++fresh_;
    diff_.added += kind == Kind::added;
    diff_.removed += kind == Kind::removed;
    if (!isShown) return void(++skipped_);
    if (diff_.lines.size() >= kMaximumShown) return void(++unshown_);
    flush();
    diff_.lines.push_back({kind, text.toString()});
  }
  void finish() {
    if (unshown_ > 0)
      diff_.lines.push_back({Kind::omission, u"%1 more"_s.arg(countedLines(unshown_ + skipped_))});
    else if (!diff_.lines.empty())
      flush();
  }

 private:
  /// The text's last line may have no end at all, which is told by itself.
  void noteLineEnd() {
    const bool bothEnd = (before_.hasLastEnd || old_ + 1 < before_.texts.size()) &&
                         (after_.hasLastEnd || fresh_ + 1 < after_.texts.size());
    diff_.changesLineEnds = diff_.changesLineEnds || bothEnd;
  }
  void flush() {
    if (skipped_ > 0) diff_.lines.push_back({Kind::omission, u"%1 unchanged"_s.arg(countedLines(skipped_))});
    skipped_ = 0;
  }

  const Lines& before_;
  const Lines& after_;
  TextDiff& diff_;
  std::size_t old_ = 0;
  std::size_t fresh_ = 0;
  qsizetype skipped_ = 0;
  qsizetype unshown_ = 0;
};

}  // namespace

QString countedLines(qsizetype count) { return count == 1 ? u"1 line"_s : u"%1 lines"_s.arg(count); }

QString TextDiff::description() const {
  QStringList parts;
  if (added > 0) parts.append(u"adds %1"_s.arg(countedLines(added)));
  if (removed > 0) parts.append(u"removes %1"_s.arg(countedLines(removed)));
  if (changesLineEnds) parts.append(u"changes the line ends"_s);
  if (lastEnd == LastEnd::added) parts.append(u"ends the last line"_s);
  if (lastEnd == LastEnd::removed) parts.append(u"leaves the last line without an end"_s);
  return parts.isEmpty() ? u"nothing would change"_s : parts.join(u", "_s);
}

TextDiff textDiff(const QString& before, const QString& after) {
  const Lines old = split(before);
  const Lines fresh = split(after);
  QHash<QStringView, std::uint32_t> numbers;
  const std::vector<std::uint32_t> oldIDs = numbered(old, numbers);
  const std::vector<std::uint32_t> freshIDs = numbered(fresh, numbers);
  const std::vector<Kind> steps = stepsBetween(oldIDs, freshIDs);
  const std::vector<bool> shown = worthShowing(steps);
  TextDiff diff;
  Walk walk(old, fresh, diff);
  for (std::size_t step = 0; step < steps.size(); ++step) walk.take(steps[step], shown[step]);
  walk.finish();
  // Where another line is the last one, its end goes without saying.
  if (old.hasLastEnd != fresh.hasLastEnd && steps.back() == Kind::same)
    diff.lastEnd = fresh.hasLastEnd ? TextDiff::LastEnd::added : TextDiff::LastEnd::removed;
  return diff;
}
