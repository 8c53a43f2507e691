#include "tools/boilerplates/template_copy.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QByteArray>
#include <QFile>
#include <QStringDecoder>

#include <cerrno>
#include <ranges>
#include <system_error>

#include "platform/file_range.h"
#include "tools/boilerplates/half_made.h"
#include "tools/boilerplates/open_file.h"
#include "tools/boilerplates/project_name.h"
#include "tools/boilerplates/template_plan.h"

using namespace Qt::StringLiterals;
namespace fs = std::filesystem;

namespace {

constexpr qsizetype kPiece = 256 * 1024;
/// Copied by the system in one go; a fraction of a second on a slow disk.
constexpr std::int64_t kRange = 8 * 1024 * 1024;
constexpr auto kPlaceholder = "{{name}}";

using Done = std::expected<void, CopyError>;

std::unexpected<CopyError> failed(const FileError& error) { return std::unexpected(CopyError{false, error}); }
std::unexpected<CopyError> failed(const fs::path& path, const std::error_code& code) {
  return failed(fileError(path, code));
}
std::unexpected<CopyError> failedCall(const fs::path& path) {
  return failed(path, std::error_code(errno, std::generic_category()));
}
std::unexpected<CopyError> cancelled() { return std::unexpected(CopyError{true, {}}); }

fs::path bytesOf(const QString& path) { return QFile::encodeName(path).toStdString(); }

mode_t modeOf(fs::perms permissions) { return static_cast<mode_t>(permissions & fs::perms::all); }

bool isText(const QByteArray& bytes) {
  if (bytes.contains('\0')) return false;
  QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
  [[maybe_unused]] const QString text = decoder(bytes);
  return !decoder.hasError();
}

class Copier {
 public:
  Copier(fs::path source, const QString& name, CopyProgress& progress, const std::stop_token& stop)
      : source_(std::move(source)), name_(QFile::encodeName(name)), progress_(progress), stop_(stop) {}

  Done copy(const TemplatePlan& plan, HalfMade& made) {
    // The user knows the place, not the temporary name.
    if (!made.make()) return failedCall(made.path().parent_path());
    for (const PlannedEntry& entry : plan.entries) {
      if (stop_.stop_requested()) return cancelled();
      if (const Done copied = copyEntry(entry, made.path()); !copied) return copied;
    }
    // Only now: nothing can be put into a folder without the right to write.
    for (const PlannedEntry& entry : std::views::reverse(plan.entries)) {
      if (entry.kind != PlannedEntry::Kind::folder) continue;
      const fs::path folder = made.path() / named(entry.path);
      if (::chmod(folder.c_str(), modeOf(entry.permissions)) != 0) return failedCall(folder);
    }
    if (::chmod(made.path().c_str(), modeOf(plan.permissions)) != 0) return failedCall(made.path());
    return {};
  }

 private:
  fs::path named(const fs::path& path) const { return named(QByteArray(path.c_str())).toStdString(); }
  QByteArray named(QByteArray text) const { return text.replace(kPlaceholder, name_); }

  Done copyEntry(const PlannedEntry& entry, const fs::path& made) {
    const fs::path to = made / named(entry.path);
    switch (entry.kind) {
      case PlannedEntry::Kind::folder:
        if (::mkdir(to.c_str(), S_IRWXU) != 0) return failedMake(entry);
        return {};
      case PlannedEntry::Kind::link:
        return copyLink(entry, to);
      case PlannedEntry::Kind::file:
        return copyFile(entry, to);
    }
    return {};
  }

  /// The user knows the template's files, not those under the temporary name.
  std::unexpected<CopyError> failedMake(const PlannedEntry& entry) const {
    if (errno != EEXIST) return failedCall(source_ / entry.path);
    const QString path = QFile::decodeName((source_ / entry.path).c_str());
    return failed(FileError{path, u"another file of the template gets the same name"_s});
  }

  Done copyLink(const PlannedEntry& entry, const fs::path& to) {
    std::error_code code;
    fs::path target = fs::read_symlink(source_ / entry.path, code);
    if (code) return failed(source_ / entry.path, code);
    if (target.is_relative()) target = named(target);
    if (::symlink(target.c_str(), to.c_str()) != 0) return failedMake(entry);
    return {};
  }

  Done copyFile(const PlannedEntry& entry, const fs::path& to) {
    const fs::path from = source_ / entry.path;
    // What was a file when the template was walked through may be a link or a pipe by now.
    const OpenFile input(from, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    if (!input.isOpen()) return failedCall(from);
    if (!input.isRegular()) return failed(FileError{QFile::decodeName(from.c_str()), u"not a regular file"_s});
    OpenFile output(to, O_WRONLY | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR);
    if (!output.isOpen()) return failedMake(entry);
    if (const Done copied = copyBytes(entry, input, output); !copied) return copied;
    if (!output.setMode(modeOf(entry.permissions)) || !output.close()) return failedCall(from);
    ++progress_.files;
    return {};
  }

  Done copyBytes(const PlannedEntry& entry, const OpenFile& input, const OpenFile& output) {
    const fs::path from = source_ / entry.path;
    // One byte more tells whether this is the whole file, and a text that is too large from one that just fits.
    const auto wanted = std::min(static_cast<std::int64_t>(entry.size), TemplateCopy::kLargestText) + 1;
    const auto first = input.read(wanted);
    if (!first) return failedCall(from);
    const bool isWhole = first->size() < wanted;
    const bool isReplaced = isWhole && first->contains(kPlaceholder) && isText(*first);
    if (!output.write(isReplaced ? named(*first) : *first)) return failedCall(from);
    progress_.bytes += first->size();
    return isWhole ? Done() : copyRest(from, input, output);
  }

  Done copyRest(const fs::path& from, const OpenFile& input, const OpenFile& output) {
    while (!stop_.stop_requested()) {
      const std::int64_t copied = copyFileRange(input.descriptor(), output.descriptor(), kRange);
      if (copied == 0) return copyPieces(from, input, output);
      progress_.bytes += copied;
    }
    return cancelled();
  }

  Done copyPieces(const fs::path& from, const OpenFile& input, const OpenFile& output) {
    while (!stop_.stop_requested()) {
      const auto piece = input.read(kPiece);
      if (!piece || !output.write(*piece)) return failedCall(from);
      if (piece->isEmpty()) return {};
      progress_.bytes += piece->size();
    }
    return cancelled();
  }

  fs::path source_;
  QByteArray name_;
  CopyProgress& progress_;
  const std::stop_token& stop_;
};

/// Each project would hold those made before it.
bool isWithin(const fs::path& place, const fs::path& source) {
  std::error_code code;
  for (fs::path folder = fs::canonical(place, code); !code; folder = folder.parent_path()) {
    if (fs::equivalent(folder, source, code)) return true;
    if (folder == folder.parent_path()) break;
  }
  return false;
}

}  // namespace

std::expected<void, CopyError> TemplateCopy::check() const {
  if (const QString problem = projectNameProblem(name_); !problem.isEmpty()) return failed(FileError{name_, problem});
  std::error_code code;
  if (fs::exists(fs::symlink_status(bytesOf(target()), code)))
    return failed(FileError{target(), u"it exists already"_s});
  if (!fs::is_directory(bytesOf(place_), code)) return failed(FileError{place_, u"there is no such folder"_s});
  if (isWithin(bytesOf(place_), bytesOf(source_)))
    return failed(FileError{place_, u"this is in the template itself"_s});
  return {};
}

std::expected<MadeProject, CopyError> TemplateCopy::run(CopyProgress& progress, const std::stop_token& stop) const {
  if (const auto checked = check(); !checked) return std::unexpected(checked.error());
  const auto plan = TemplatePlan::make(bytesOf(source_), stop);
  if (!plan) return failed(plan.error());
  progress.totalFiles = plan->files;
  progress.totalBytes = plan->bytes;

  const fs::path target = bytesOf(this->target());
  HalfMade made(target);
  const Done copied = Copier(bytesOf(source_), name_, progress, stop).copy(*plan, made);
  if (stop.stop_requested()) return cancelled();
  if (!copied) return std::unexpected(copied.error());
  std::error_code code;
  if (fs::exists(fs::symlink_status(target, code))) return failed(FileError{this->target(), u"it exists already"_s});
  if (!made.putInPlace()) return failedCall(target);
  return MadeProject{this->target(), plan->skipped};
}
