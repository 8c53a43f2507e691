#include "tools/asking/fence_marks.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace {

/// A line that may begin or end a code block.
struct Fence {
  /// Of its first character, after the marks of lists and quotes.
  qsizetype indent = 0;
  bool isInItem = false;
  QChar character;
  qsizetype length = 0;
  /// Where the language stands, if it is a first line.
  qsizetype end = 0;
  /// What is there is more than white space.
  bool hasInfo = false;
};

bool isBlank(QStringView text) { return text.trimmed().isEmpty(); }

/// The length of the mark of a list's item that begins there; 0: none.
qsizetype itemMark(QStringView text) {
  qsizetype digits = 0;
  while (digits < text.size() && text[digits].isDigit()) ++digits;
  const QStringView marks = digits > 0 ? u".)" : u"-*+";
  const bool isMark = digits + 1 < text.size() && marks.contains(text[digits]) && text[digits + 1].isSpace();
  return isMark ? digits + 1 : 0;
}

std::optional<Fence> fenceIn(QStringView line) {
  Fence fence;
  while (fence.indent < line.size()) {
    const qsizetype item = itemMark(line.sliced(fence.indent));
    if (item == 0 && !line[fence.indent].isSpace() && line[fence.indent] != u'>') break;
    fence.indent += std::max<qsizetype>(item, 1);
    fence.isInItem = fence.isInItem || item > 0;
  }
  if (fence.indent == line.size() || (line[fence.indent] != u'`' && line[fence.indent] != u'~')) return std::nullopt;
  fence.character = line[fence.indent];
  fence.end = fence.indent;
  while (fence.end < line.size() && line[fence.end] == fence.character) ++fence.end;
  fence.length = fence.end - fence.indent;
  const QStringView info = line.sliced(fence.end);
  fence.hasInfo = !isBlank(info);
  const bool isInline = fence.character == u'`' && info.contains(u'`');
  return fence.length < 3 || isInline ? std::nullopt : std::optional(fence);
}

/// What a line gets before it is read.
struct Change {
  bool isSetOff = false;
  /// 0: no mark.
  qsizetype mark = 0;
};

class FenceMarker {
 public:
  Change next(QStringView line) {
    const bool isBelowWords = std::exchange(isAfterWords_, !isBlank(line));
    const auto fence = fenceIn(line);
    if (open_) {
      if (fence && ends(*fence)) {
        open_.reset();
        isAfterBlock_ = true;
      }
      return {};
    }
    const bool isNeighbour = std::exchange(isAfterBlock_, isAfterBlock_ && isBlank(line));
    if (!fence) return {};
    open_ = fence;
    isMarked_ = isNeighbour && !isMarked_;
    const bool isIndented = fence->indent > 0 && isBlank(line.first(fence->indent));
    return {isIndented && isBelowWords, isMarked_ ? fence->end : 0};
  }

 private:
  bool ends(const Fence& fence) const {
    return fence.character == open_->character && fence.length >= open_->length && !fence.hasInfo && !fence.isInItem &&
           fence.indent <= open_->indent + 3;
  }

  std::optional<Fence> open_;
  bool isAfterBlock_ = false;
  bool isAfterWords_ = false;
  bool isMarked_ = false;
};

}  // namespace

QString withFenceMarks(const QString& markdown) {
  QString marked;
  marked.reserve(markdown.size());
  FenceMarker marker;
  for (qsizetype start = 0; start < markdown.size();) {
    const qsizetype feed = markdown.indexOf(u'\n', start);
    const qsizetype end = feed < 0 ? markdown.size() : feed + 1;
    const QStringView line = QStringView(markdown).sliced(start, end - start);
    const Change change = marker.next(line);
    if (change.isSetOff) marked += u'\n';
    marked += line.first(change.mark);
    if (change.mark > 0) marked += kFenceMark;
    marked += line.sliced(change.mark);
    start = end;
  }
  return marked;
}
