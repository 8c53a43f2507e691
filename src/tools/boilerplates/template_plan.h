#pragma once

#include <QStringList>

#include <cstdint>
#include <expected>
#include <filesystem>
#include <stop_token>
#include <vector>

#include "base/file_error.h"

/// One entry of a template that is to be copied.
struct PlannedEntry {
  enum class Kind { folder, file, link };

  /// Relative to the template; a folder comes before what is in it.
  std::filesystem::path path;
  Kind kind;
  std::filesystem::perms permissions;
  /// Bytes; of files only.
  std::uintmax_t size = 0;
};

/// What is to be copied of a template: everything, hidden files too, but what is named `.git` and what the template's
/// `.gitignore` files leave out.
struct TemplatePlan {
  std::vector<PlannedEntry> entries;
  std::filesystem::perms permissions = std::filesystem::perms::owner_all;
  std::int64_t files = 0;
  std::int64_t bytes = 0;
  /// Pipes, sockets and devices, relative to the template.
  QStringList skipped;

  /// Walks through the template, following no links. A folder that cannot be read is an error. Blocking; asked to stop
  /// it answers what it has.
  static std::expected<TemplatePlan, FileError> make(const std::filesystem::path& source, const std::stop_token& stop);
};

/// The error of a system call on a file.
FileError fileError(const std::filesystem::path& path, const std::error_code& code);
