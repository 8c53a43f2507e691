#pragma once

#include <expected>
#include <optional>
#include <vector>

#include "tools/inject_md/md_document.h"
#include "tools/inject_md/text_diff.h"

/// Why a file was not put into a folder.
struct InjectionError {
  QString fileName;
  QString reason;

  QString description() const;
};

/// What stands in the place of a file that is to be written.
struct ExistingFile {
  /// What overwriting would do, "adds 1 line" say.
  QString effect;
  /// None where lines cannot be compared.
  std::vector<DiffLine> changes;
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
