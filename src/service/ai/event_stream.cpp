#include "service/ai/event_stream.h"

namespace {

constexpr qsizetype kLongestEvent = 4'000'000;
constexpr QByteArrayView kData = "data:";

}  // namespace

bool EventStream::feed(std::string_view bytes) {
  while (!bytes.empty() && !isTooLong_) {
    // A line ends with a line feed, a return, or both.
    if (std::exchange(isAfterReturn_, false) && bytes.front() == '\n') {
      bytes.remove_prefix(1);
      continue;
    }
    const auto end = bytes.find_first_of("\r\n");
    line_.append(bytes.data(), static_cast<qsizetype>(std::min(end, bytes.size())));
    isTooLong_ = line_.size() + data_.size() > kLongestEvent;
    if (isTooLong_ || end == std::string_view::npos) break;
    isAfterReturn_ = bytes[end] == '\r';
    bytes.remove_prefix(end + 1);
    endLine();
  }
  return !isTooLong_;
}

void EventStream::endLine() {
  const QByteArray line = std::exchange(line_, {});
  if (line.startsWith(kData)) {
    const bool hasBlank = line.size() > kData.size() && line[kData.size()] == ' ';
    if (hasData_) data_ += '\n';
    data_ += line.sliced(kData.size() + (hasBlank ? 1 : 0));
    hasData_ = true;
  }
  if (!line.isEmpty() || !std::exchange(hasData_, false)) return;
  take_(std::exchange(data_, {}));
}
