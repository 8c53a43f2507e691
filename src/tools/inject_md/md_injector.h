#pragma once

#include <expected>
#include <optional>

#include "tools/inject_md/md_document.h"

/// How one text differs from another, in lines.
struct LineChanges {
  qsizetype added = 0;
  qsizetype removed = 0;

  bool operator==(const LineChanges&) const = default;
  /// "adds 3 lines, removes 1 line", or that nothing changes.
  QString description() const;
};

LineChanges lineChanges(const QString& before, const QString& after);

/// Why a file was not put into a folder.
struct InjectionError {
  QString fileName;
  QString reason;

  QString description() const;
};

/// What stands in the place of a file that is to be written.
struct ExistingFile {
  /// None for a file too large to compare.
  std::optional<LineChanges> changes;

  /// What overwriting would do.
  QString description() const;
};

/// Puts one file into one folder. Blocking; for any thread.
class MDInjector {
 public:
  /// Larger files are not compared, in bytes: no instruction file comes near.
  static constexpr qint64 kMaximumCompared = 1024 * 1024;
  enum class Overwrite { no, yes };

  MDInjector(MDDocument document, QString folder);

  QString targetPath() const;
  /// None when the file would be new. Errors: what `write` would fail for as well, as far as can be told before.
  std::expected<std::optional<ExistingFile>, InjectionError> inspect() const;
  /// Replaces the file whole or not at all; an existing one keeps its permissions, and a link to one stays a link.
  /// Errors: the folder is gone, a file is there and may not be overwritten, a link leads nowhere, the disk.
  std::expected<void, InjectionError> write(Overwrite overwrite) const;

 private:
  std::unexpected<InjectionError> fault(const QString& reason) const;
  ExistingFile compare() const;

  MDDocument document_;
  QString folder_;
};
