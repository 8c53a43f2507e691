#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The rules of one `.gitignore` file, read and applied as git does: the last rule that matches decides. Paths and
/// patterns are the file system's own bytes.
class IgnoreRules {
 public:
  enum class Verdict { undecided, ignored, kept };

  explicit IgnoreRules(std::string_view text);

  /// `path`: relative to the folder that holds the file, its components divided by single slashes.
  Verdict verdict(std::string_view path, bool isFolder) const;

 private:
  struct Rule {
    /// The components of the pattern; "**" stands for any number of them.
    std::vector<std::string> components;
    bool isNegated = false;
    bool isForFolders = false;
    /// Matched against the whole path, else against its last component.
    bool isAnchored = false;

    bool matches(const std::vector<std::string_view>& path, bool isFolder) const;
  };

  void add(std::string_view line);

  std::vector<Rule> rules_;
};

/// Whether a shell pattern (`*`, `?`, `[…]`, `\`) matches the whole of one component. A pattern that is malformed
/// matches nothing.
bool matchesGlob(std::string_view pattern, std::string_view text);
