#include "tools/session_history/byte_phrase.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr bool isPlain(char16_t character) {
  return (character >= u'0' && character <= u'9') || (character >= u'a' && character <= u'z') ||
         (character >= u'A' && character <= u'Z');
}

std::size_t find(std::string_view text, std::string_view wanted, std::size_t from = 0) {
  const auto* place =
      static_cast<const char*>(memmem(text.data() + from, text.size() - from, wanted.data(), wanted.size()));
  return place == nullptr ? std::string_view::npos : static_cast<std::size_t>(place - text.data());
}

/// `text` from its first letter or digit on that is no part of an escape.
std::string_view fromNextWord(std::string_view text) {
  constexpr std::size_t kUnicodeEscape = 6;
  std::size_t at = 0;
  while (at < text.size() && !isPlain(static_cast<unsigned char>(text[at]))) {
    const bool escapes = text[at] == '\\' && at + 1 < text.size();
    if (!escapes)
      ++at;
    else
      at += text[at + 1] == 'u' ? kUnicodeEscape : 2;
  }
  return text.substr(std::min(at, text.size()));
}

std::size_t longestOf(const std::vector<std::string>& runs) {
  return static_cast<std::size_t>(std::ranges::max_element(runs, {}, &std::string::size) - runs.begin());
}

/// The runs of plain characters in a text without others than ASCII ones.
std::vector<std::string> runsOf(QStringView text) {
  std::vector<std::string> runs;
  bool inRun = false;
  for (const QChar character : text) {
    if (!isPlain(character.unicode())) {
      inRun = false;
      continue;
    }
    if (!inRun) runs.emplace_back();
    inRun = true;
    runs.back() += lowered(static_cast<char>(character.unicode()));
  }
  return runs;
}

}  // namespace

/// An accented letter may be written as a plain one and its accent, so what stands before one and what behind it is
/// not looked for together: of such stretches the one with the longest run counts.
BytePhrase::BytePhrase(const QString& text) {
  const auto isAscii = [](QChar character) { return character.unicode() < 0x80; };
  for (auto start = text.begin(); start != text.end();) {
    const auto end = std::find_if_not(start, text.end(), isAscii);
    std::vector<std::string> runs = runsOf(QStringView(start, end));
    if (!runs.empty() && (runs_.empty() || runs[longestOf(runs)].size() > runs_[longest_].size())) {
      runs_ = std::move(runs);
      longest_ = longestOf(runs_);
    }
    start = std::find_if(end, text.end(), isAscii);
  }
}

std::size_t BytePhrase::findLongest(std::string_view lowered) const { return find(lowered, runs_[longest_]); }

bool BytePhrase::mayBeIn(std::string_view lowered) const {
  const std::string& first = runs_.front();
  const auto follows = [this](std::string_view rest) {
    return std::all_of(runs_.begin() + 1, runs_.end(), [&rest](const std::string& run) {
      rest = fromNextWord(rest);
      if (!rest.starts_with(run)) return false;
      rest.remove_prefix(run.size());
      return true;
    });
  };
  for (std::size_t at = find(lowered, first); at != std::string_view::npos; at = find(lowered, first, at + 1))
    if (follows(lowered.substr(at + first.size()))) return true;
  return false;
}
