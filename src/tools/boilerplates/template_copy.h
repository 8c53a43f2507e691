#pragma once

#include <QString>
#include <QStringList>

#include <atomic>
#include <cstdint>
#include <expected>
#include <stop_token>

#include "base/file_error.h"

/// How far a copy is; written by the thread that copies, read by any.
struct CopyProgress {
  std::atomic<std::int64_t> files = 0;
  std::atomic<std::int64_t> bytes = 0;
  /// 0 until the template has been walked through.
  std::atomic<std::int64_t> totalFiles = 0;
  std::atomic<std::int64_t> totalBytes = 0;
};

/// Why no project was made. `description()` is the only text made from it.
struct CopyError {
  /// The user's wish, nothing to report.
  bool wasCancelled = false;
  FileError file;

  QString description() const { return wasCancelled ? QStringLiteral("cancelled") : file.description(); }
};

/// A project that was made.
struct MadeProject {
  QString path;
  /// The pipes, sockets and devices of the template, which are not copied.
  QStringList skipped;
};

/// A project to be made from a template folder.
///
/// `{{name}}` is replaced by the project's name in the names of files and folders, in the targets of relative links,
/// and in text files (UTF-8 without NUL) of at most `kLargestText`. The copy grows under a temporary name beside its
/// place and appears there when it is whole; until then a failure, or a request to stop, leaves nothing behind.
class TemplateCopy {
 public:
  static constexpr std::int64_t kLargestText = 1024 * 1024;

  /// `source` and `place` are folders, `name` is the new folder's in `place`.
  TemplateCopy(QString source, QString place, QString name)
      : source_(std::move(source)), place_(std::move(place)), name_(std::move(name)) {}

  QString target() const { return place_.endsWith(u'/') ? place_ + name_ : place_ + u'/' + name_; }

  /// Blocking: for a background thread.
  std::expected<MadeProject, CopyError> run(CopyProgress& progress, const std::stop_token& stop) const;

 private:
  std::expected<void, CopyError> check() const;

  QString source_;
  QString place_;
  QString name_;
};
