#include "tools/boilerplates/template_plan.h"

#include <QFile>

#include <algorithm>
#include <ranges>
#include <string>
#include <system_error>

#include "tools/boilerplates/ignore_rules.h"
#include "tools/boilerplates/open_file.h"

using namespace Qt::StringLiterals;
namespace fs = std::filesystem;

namespace {

/// No `.gitignore` that is one is longer.
constexpr qsizetype kLongestRules = 1024 * 1024;

QString shown(const fs::path& path) { return QFile::decodeName(path.c_str()); }

/// Walks depth first, with the rules of the folders it is in.
class Planner {
 public:
  Planner(const fs::path& source, const std::stop_token& stop) : source_(source), stop_(stop) {}

  std::expected<TemplatePlan, FileError> plan() {
    std::error_code code;
    const fs::file_status status = fs::status(source_, code);
    if (!fs::is_directory(status)) return std::unexpected(FileError{shown(source_), u"there is no such folder"_s});
    plan_.permissions = status.permissions();
    if (const auto walked = walk({}); !walked) return std::unexpected(walked.error());
    return std::move(plan_);
  }

 private:
  using Done = std::expected<void, FileError>;

  struct FolderRules {
    /// Length of the folder's path with its slash, in front of the paths that the rules are for.
    std::size_t prefix;
    IgnoreRules rules;
  };

  Done walk(const fs::path& folder) {
    auto names = list(folder);
    if (!names) return std::unexpected(names.error());
    const std::size_t rulesBefore = rules_.size();
    if (const auto read = readRules(folder, *names); !read) return read;
    for (const std::string& name : *names) {
      if (stop_.stop_requested()) break;
      if (const auto added = add(folder / name); !added) return added;
    }
    rules_.erase(rules_.begin() + static_cast<std::ptrdiff_t>(rulesBefore), rules_.end());
    return {};
  }

  /// Sorted, so that the same template fails at the same file each time.
  std::expected<std::vector<std::string>, FileError> list(const fs::path& folder) const {
    std::error_code code;
    std::vector<std::string> names;
    for (fs::directory_iterator it(source_ / folder, code), end; !code && it != end; it.increment(code))
      if (it->path().filename() != ".git") names.push_back(it->path().filename().native());
    if (code) return std::unexpected(fileError(source_ / folder, code));
    std::ranges::sort(names);
    return names;
  }

  Done readRules(const fs::path& folder, const std::vector<std::string>& names) {
    if (!std::ranges::binary_search(names, ".gitignore")) return {};
    const fs::path path = source_ / folder / ".gitignore";
    std::error_code code;
    // A folder or a link of that name holds no rules.
    if (!fs::is_regular_file(fs::symlink_status(path, code))) return {};
    const OpenFile file(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    const auto text = file.isOpen() ? file.read(kLongestRules) : std::nullopt;
    if (!text) return std::unexpected(fileError(path, std::error_code(errno, std::generic_category())));
    const std::size_t prefix = folder.empty() ? 0 : folder.native().size() + 1;
    rules_.push_back({prefix, IgnoreRules({text->constData(), static_cast<std::size_t>(text->size())})});
    return {};
  }

  /// The rules nearest to the file come first.
  bool isIgnored(const fs::path& path, bool isFolder) const {
    for (const FolderRules& folder : std::views::reverse(rules_)) {
      const auto verdict = folder.rules.verdict(std::string_view(path.native()).substr(folder.prefix), isFolder);
      if (verdict != IgnoreRules::Verdict::undecided) return verdict == IgnoreRules::Verdict::ignored;
    }
    return false;
  }

  Done add(const fs::path& path) {
    std::error_code code;
    const fs::file_status status = fs::symlink_status(source_ / path, code);
    if (code) return std::unexpected(fileError(source_ / path, code));
    const bool isFolder = fs::is_directory(status);
    if (isIgnored(path, isFolder)) return {};
    if (isFolder) {
      plan_.entries.push_back({path, PlannedEntry::Kind::folder, status.permissions()});
      return walk(path);
    }
    if (fs::is_symlink(status)) {
      plan_.entries.push_back({path, PlannedEntry::Kind::link, status.permissions()});
      return {};
    }
    return addFile(path, status);
  }

  Done addFile(const fs::path& path, const fs::file_status& status) {
    if (!fs::is_regular_file(status)) {
      plan_.skipped.append(shown(path));
      return {};
    }
    std::error_code code;
    const std::uintmax_t size = fs::file_size(source_ / path, code);
    if (code) return std::unexpected(fileError(source_ / path, code));
    plan_.entries.push_back({path, PlannedEntry::Kind::file, status.permissions(), size});
    ++plan_.files;
    plan_.bytes += static_cast<std::int64_t>(size);
    return {};
  }

  const fs::path& source_;
  const std::stop_token& stop_;
  std::vector<FolderRules> rules_;
  TemplatePlan plan_;
};

}  // namespace

std::expected<TemplatePlan, FileError> TemplatePlan::make(const fs::path& source, const std::stop_token& stop) {
  return Planner(source, stop).plan();
}

FileError fileError(const fs::path& path, const std::error_code& code) {
  return {shown(path), qt_error_string(code.value())};
}
