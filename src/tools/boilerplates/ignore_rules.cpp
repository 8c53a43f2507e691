#include "tools/boilerplates/ignore_rules.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>
#include <ranges>

namespace {

constexpr std::string_view kAnyFolders = "**";

struct NamedClass {
  std::string_view name;
  int (*holds)(int);
};

constexpr std::array kNamedClasses = {
    NamedClass{"alnum", std::isalnum}, NamedClass{"alpha", std::isalpha}, NamedClass{"blank", std::isblank},
    NamedClass{"cntrl", std::iscntrl}, NamedClass{"digit", std::isdigit}, NamedClass{"graph", std::isgraph},
    NamedClass{"lower", std::islower}, NamedClass{"print", std::isprint}, NamedClass{"punct", std::ispunct},
    NamedClass{"space", std::isspace}, NamedClass{"upper", std::isupper}, NamedClass{"xdigit", std::isxdigit},
};

/// What one element of a pattern says of one byte, and where the next element begins.
struct Step {
  bool matches;
  std::size_t next;
};

unsigned char byte(char character) { return static_cast<unsigned char>(character); }

/// Walks through a bracket expression, from the byte behind its "[".
class Bracket {
 public:
  Bracket(std::string_view pattern, std::size_t start, char wanted)
      : pattern_(pattern), at_(start), wanted_(byte(wanted)) {}

  /// None when it is never closed or names a class that there is not.
  std::optional<Step> read() {
    const bool isInverted = at_ < pattern_.size() && (pattern_[at_] == '!' || pattern_[at_] == '^');
    if (isInverted) ++at_;
    for (bool isFirst = true; at_ < pattern_.size(); isFirst = false) {
      if (pattern_[at_] == ']' && !isFirst) return Step{holds_ != isInverted, at_ + 1};
      if (!(pattern_.substr(at_).starts_with("[:") ? readNamed() : readRange())) return std::nullopt;
    }
    return std::nullopt;
  }

 private:
  bool readNamed() {
    const std::size_t close = pattern_.find(']', at_ + 2);
    if (close == std::string_view::npos) return false;
    const std::size_t end = close - 1;
    // Not the end of a name: the "[" is one of the bytes.
    if (end < at_ + 2 || pattern_[end] != ':') return readRange();
    const auto known = std::ranges::find(kNamedClasses, pattern_.substr(at_ + 2, end - at_ - 2), &NamedClass::name);
    if (known == kNamedClasses.end()) return false;
    holds_ = holds_ || known->holds(wanted_) != 0;
    at_ = end + 2;
    return true;
  }
  bool readRange() {
    const auto low = readByte();
    auto high = low;
    const std::string_view rest = pattern_.substr(std::min(at_, pattern_.size()));
    if (rest.size() > 1 && rest[0] == '-' && rest[1] != ']') {
      ++at_;
      high = readByte();
    }
    if (!low || !high) return false;
    // The first byte of a range counts even when the range is empty.
    holds_ = holds_ || wanted_ == *low || (*low <= wanted_ && wanted_ <= *high);
    return true;
  }
  std::optional<unsigned char> readByte() {
    if (at_ < pattern_.size() && pattern_[at_] == '\\') ++at_;
    if (at_ >= pattern_.size()) return std::nullopt;
    return byte(pattern_[at_++]);
  }

  std::string_view pattern_;
  std::size_t at_;
  unsigned char wanted_;
  bool holds_ = false;
};

/// The element at `at`, which is not a star, against one byte; none when the pattern is malformed there.
std::optional<Step> step(std::string_view pattern, std::size_t at, char wanted) {
  switch (pattern[at]) {
    case '?':
      return Step{true, at + 1};
    case '[':
      return Bracket(pattern, at + 1, wanted).read();
    case '\\':
      if (at + 1 == pattern.size()) return std::nullopt;
      return Step{pattern[at + 1] == wanted, at + 2};
    default:
      return Step{pattern[at] == wanted, at + 1};
  }
}

std::vector<std::string_view> split(std::string_view path) {
  std::vector<std::string_view> components;
  for (std::size_t start = 0; start <= path.size();) {
    const std::size_t end = std::min(path.find('/', start), path.size());
    components.push_back(path.substr(start, end - start));
    start = end + 1;
  }
  return components;
}

/// Where the component that begins at `start` ends. A slash in a bracket expression divides nothing.
std::size_t componentEnd(std::string_view pattern, std::size_t start) {
  std::size_t at = start;
  while (at < pattern.size() && pattern[at] != '/') {
    if (pattern.substr(at).starts_with("\\/")) return at;
    const auto element = step(pattern, at, '/');
    // Malformed: nothing matches it, however it is divided.
    if (!element) return pattern.size();
    at = element->next;
  }
  return at;
}

bool isStars(std::string_view component) {
  return component.size() > 1 && component.find_first_not_of('*') == std::string_view::npos;
}

/// Any number of stars is as good as two, and an escaped slash as good as a slash.
std::vector<std::string> splitPattern(std::string_view pattern) {
  std::vector<std::string> components;
  for (std::size_t start = 0; start <= pattern.size();) {
    const std::size_t end = componentEnd(pattern, start);
    const std::string_view component = pattern.substr(start, end - start);
    components.emplace_back(isStars(component) ? kAnyFolders : component);
    start = end + (pattern.substr(std::min(end, pattern.size())).starts_with('\\') ? 2 : 1);
  }
  return components;
}

/// Blanks at the end do not count, unless a backslash protects them.
std::string_view withoutTrailingBlanks(std::string_view line) {
  const std::size_t last = line.find_last_not_of(' ');
  if (last == std::string_view::npos) return {};
  const std::size_t end = last + 1;
  std::size_t backslashes = 0;
  while (backslashes < end && line[end - 1 - backslashes] == '\\') ++backslashes;
  const bool isProtected = backslashes % 2 == 1 && end < line.size();
  return line.substr(0, isProtected ? end + 1 : end);
}

}  // namespace

/// Goes back to the last star only: an earlier one can gain nothing by taking more. So the time is bounded by the
/// product of both lengths.
bool matchesGlob(std::string_view pattern, std::string_view text) {
  std::size_t at = 0;
  std::size_t done = 0;
  std::optional<std::size_t> behindStar;
  std::size_t starTook = 0;
  while (done < text.size()) {
    if (at < pattern.size() && pattern[at] == '*') {
      behindStar = ++at;
      starTook = done;
      continue;
    }
    const auto taken = at < pattern.size() ? step(pattern, at, text[done]) : Step{false, at};
    if (!taken) return false;
    if (taken->matches) {
      at = taken->next;
      ++done;
    } else if (behindStar) {
      at = *behindStar;
      done = ++starTook;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', at) == std::string_view::npos;
}

IgnoreRules::IgnoreRules(std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    add(line);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

void IgnoreRules::add(std::string_view line) {
  if (line.starts_with('#')) return;
  line = withoutTrailingBlanks(line);
  Rule rule;
  if (line.starts_with('!')) {
    rule.isNegated = true;
    line.remove_prefix(1);
  }
  if (line.ends_with('/')) {
    rule.isForFolders = true;
    line.remove_suffix(1);
  }
  rule.isAnchored = line.find('/') != std::string_view::npos;
  if (line.starts_with('/')) line.remove_prefix(1);
  if (line.empty()) return;
  rule.components = splitPattern(line);
  rules_.push_back(std::move(rule));
}

IgnoreRules::Verdict IgnoreRules::verdict(std::string_view path, bool isFolder) const {
  const std::vector<std::string_view> components = split(path);
  for (const Rule& rule : std::views::reverse(rules_))
    if (rule.matches(components, isFolder)) return rule.isNegated ? Verdict::kept : Verdict::ignored;
  return Verdict::undecided;
}

/// The same walk as in one component, with "**" in the place of the star; at the end it stands for one component at
/// least.
bool IgnoreRules::Rule::matches(const std::vector<std::string_view>& path, bool isFolder) const {
  if (isForFolders && !isFolder) return false;
  if (!isAnchored) return matchesGlob(components.front(), path.back());
  std::size_t at = 0;
  std::size_t done = 0;
  std::optional<std::size_t> behindStars;
  std::size_t starsTook = 0;
  while (done < path.size()) {
    if (at < components.size() && components[at] == kAnyFolders) {
      if (at + 1 == components.size()) return true;
      behindStars = ++at;
      starsTook = done;
    } else if (at < components.size() && matchesGlob(components[at], path[done])) {
      ++at;
      ++done;
    } else if (behindStars) {
      at = *behindStars;
      done = ++starsTook;
    } else {
      return false;
    }
  }
  return at == components.size();
}
