#pragma once

#include <QString>

#include <string>
#include <string_view>
#include <vector>

/// Says of a line of JSON, before it is decoded, whether its texts can contain another: that one's plain letters and
/// digits stand in them byte by byte, but for letter case, for no agent escapes those.
class BytePhrase {
 public:
  /// `text`: composed as far as it can be.
  explicit BytePhrase(const QString& text);

  /// Without any letter or digit nothing can be said.
  bool isEmpty() const { return runs_.empty(); }
  /// Where the longest run of letters, likely the rarest, stands first in `lowered`; npos where it does not.
  std::size_t findLongest(std::string_view lowered) const;
  /// Whether all runs stand in `lowered`, a line, one after the other with no letter between.
  bool mayBeIn(std::string_view lowered) const;

 private:
  std::vector<std::string> runs_;
  std::size_t longest_ = 0;
};

/// The byte with an ASCII letter in lower case.
constexpr char lowered(char byte) { return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte | 0x20) : byte; }
