#include "service/http/multipart_reader.h"

#include <QList>

#include <algorithm>
#include <cctype>

#include "service/http/part_head.h"

namespace {

constexpr std::size_t kLongestHead = 8192;
constexpr int kMostParts = 32;
/// From the definition of the format.
constexpr qsizetype kLongestBoundary = 70;
constexpr std::string_view kLineBreak = "\r\n";
constexpr std::string_view kEndOfHead = "\r\n\r\n";

bool isBoundary(const QByteArray& text) {
  return !text.isEmpty() && text.size() <= kLongestBoundary && !text.endsWith(' ') &&
         std::ranges::all_of(text, [](char c) {
           return std::isalnum(static_cast<unsigned char>(c)) != 0 || std::string_view("'()+_,-./:=? ").contains(c);
         });
}

QByteArray unquoted(const QByteArray& text) {
  return text.size() >= 2 && text.startsWith('"') && text.endsWith('"') ? text.mid(1, text.size() - 2) : text;
}

}  // namespace

std::optional<QByteArray> MultipartReader::boundary(const QByteArray& contentType) {
  const QList<QByteArray> parts = contentType.split(';');
  if (parts.front().trimmed().toLower() != "multipart/form-data") return {};
  for (const QByteArray& part : parts.mid(1)) {
    const auto equals = part.indexOf('=');
    if (equals < 0 || part.first(equals).trimmed().toLower() != "boundary") continue;
    QByteArray value = unquoted(part.mid(equals + 1).trimmed());
    if (isBoundary(value)) return value;
  }
  return {};
}

MultipartReader::MultipartReader(const QByteArray& boundary, PartReceiver& receiver)
    : receiver_(receiver), delimiter_("\r\n--" + boundary.toStdString()) {}

void MultipartReader::feed(std::string_view bytes) {
  while (!bytes.empty() && !error_ && state_ != State::end) step(bytes);
}

void MultipartReader::step(std::string_view& bytes) {
  switch (state_) {
    case State::delimiter:
      return readDelimiter(bytes);
    case State::afterDelimiter:
      return readAfterDelimiter(bytes);
    case State::head:
      return readHead(bytes);
    case State::body:
      return readBody(bytes);
    case State::end:
      return;
  }
}

void MultipartReader::readDelimiter(std::string_view& bytes) {
  if (bytes.front() != delimiter_[matched_]) return fail("The form does not begin with its boundary.");
  bytes.remove_prefix(1);
  if (++matched_ == delimiter_.size()) state_ = State::afterDelimiter;
}

void MultipartReader::readAfterDelimiter(std::string_view& bytes) {
  held_ += bytes.front();
  bytes.remove_prefix(1);
  if (held_.size() < 2) return;
  const bool isLast = held_ == "--";
  if (!isLast && held_ != kLineBreak) return fail("A boundary is followed by something else.");
  if (!isLast && ++parts_ > kMostParts) return fail("The form has too many parts.");
  held_.clear();
  state_ = isLast ? State::end : State::head;
}

void MultipartReader::readHead(std::string_view& bytes) {
  const std::size_t before = held_.size();
  held_.append(bytes.substr(0, kLongestHead - before));
  const auto end = held_.find(kEndOfHead);
  if (end == std::string::npos) {
    bytes.remove_prefix(held_.size() - before);
    if (held_.size() == kLongestHead) fail("The head of a part is too long.");
    return;
  }
  bytes.remove_prefix(end + kEndOfHead.size() - before);
  beginPart(std::string_view(held_).substr(0, end));
  held_.clear();
}

void MultipartReader::beginPart(std::string_view head) {
  const std::optional<PartHead> read = readPartHead(head);
  if (!read) return fail("The head of a part is not that of a form.");
  state_ = State::body;
  matched_ = 0;
  receiver_.beginPart(*read);
}

void MultipartReader::endPart() {
  receiver_.endPart();
  state_ = State::afterDelimiter;
}

void MultipartReader::readBody(std::string_view& bytes) {
  if (matched_ > 0) return continueMatch(bytes);
  const auto found = bytes.find(delimiter_);
  if (found != std::string_view::npos) {
    if (found > 0) receiver_.takePart(bytes.substr(0, found));
    bytes.remove_prefix(found + delimiter_.size());
    return endPart();
  }
  // What may be the beginning of a delimiter waits for the next piece. A delimiter has but one CR.
  const std::string_view tail = bytes.substr(bytes.size() - std::min(bytes.size(), delimiter_.size() - 1));
  const auto begin = tail.rfind('\r');
  const bool mayBegin = begin != std::string_view::npos && delimiter_.starts_with(tail.substr(begin));
  matched_ = mayBegin ? tail.size() - begin : 0;
  if (matched_ < bytes.size()) receiver_.takePart(bytes.substr(0, bytes.size() - matched_));
  bytes = {};
}

void MultipartReader::continueMatch(std::string_view& bytes) {
  const auto expected = std::string_view(delimiter_).substr(matched_);
  const auto count = static_cast<std::size_t>(std::ranges::mismatch(bytes, expected).in1 - bytes.begin());
  const std::size_t before = matched_;
  matched_ += count;
  bytes.remove_prefix(count);
  if (matched_ == delimiter_.size()) return endPart();
  if (bytes.empty()) return;
  // It was content after all.
  matched_ = 0;
  receiver_.takePart(std::string_view(delimiter_).substr(0, before + count));
}
