#include "service/links/byte_range.h"

#include <algorithm>

namespace {

constexpr QByteArrayView kUnit = "bytes=";

std::optional<qint64> number(const QByteArray& text) {
  bool isNumber = false;
  const qint64 value = text.toLongLong(&isNumber);
  const bool isDigits = std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
  if (!isNumber || !isDigits) return {};
  return value;
}

ByteRange part(qint64 first, qint64 last, qint64 fileSize) {
  if (first >= fileSize) return {ByteRange::Kind::impossible, 0, 0};
  return {ByteRange::Kind::part, first, std::min(last, fileSize - 1) - first + 1};
}

}  // namespace

ByteRange ByteRange::of(const QByteArray& header, qint64 fileSize) {
  const ByteRange whole{Kind::whole, 0, fileSize};
  if (!header.startsWith(kUnit) || header.contains(',')) return whole;
  const QByteArray range = header.mid(kUnit.size()).trimmed();
  const auto hyphen = range.indexOf('-');
  if (hyphen < 0) return whole;
  const auto first = number(range.first(hyphen));
  const auto last = number(range.mid(hyphen + 1));
  const bool isSuffix = hyphen == 0;
  const bool isOpen = hyphen == range.size() - 1;
  if ((!first && !isSuffix) || (!last && !isOpen) || (isSuffix && isOpen)) return whole;
  if (isSuffix) {
    if (*last == 0) return {Kind::impossible, 0, 0};
    return part(std::max<qint64>(fileSize - *last, 0), fileSize - 1, fileSize);
  }
  if (!isOpen && *last < *first) return whole;
  return part(*first, isOpen ? fileSize - 1 : *last, fileSize);
}
