#include "tools/boilerplates/template_copy.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QByteArray>
#include <QFile>
#include <QStringDecoder>
#include <QUuid>

#include <cerrno>
#include <optional>
#include <ranges>
#include <system_error>

#include "tools/boilerplates/project_name.h"
#include "tools/boilerplates/template_plan.h"

using namespace Qt::StringLiterals;
namespace fs = std::filesystem;

namespace {

constexpr qsizetype kPiece = 256 * 1024;
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

/// An open file, closed when it goes.
class OpenFile {
 public:
  OpenFile(const fs::path& path, int flags, mode_t mode = 0)
      : descriptor_(::open(path.c_str(), flags | O_CLOEXEC, mode)) {}
  ~OpenFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  bool isOpen() const { return descriptor_ >= 0; }
  bool isRegular() const {
    struct stat status{};
    return ::fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode);
  }
  /// Up to `size` bytes, fewer only at the file's end; none on an error.
  std::optional<QByteArray> read(qsizetype size) const {
    QByteArray bytes(size, Qt::Uninitialized);
    qsizetype filled = 0;
    while (filled < size) {
      const ssize_t count = ::read(descriptor_, bytes.data() + filled, static_cast<std::size_t>(size - filled));
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) return std::nullopt;
      if (count == 0) break;
      filled += count;
    }
    bytes.truncate(filled);
    return bytes;
  }
  bool write(const QByteArray& bytes) const {
    qsizetype written = 0;
    while (written < bytes.size()) {
      const ssize_t count =
          ::write(descriptor_, bytes.constData() + written, static_cast<std::size_t>(bytes.size() - written));
      if (count < 0 && errno != EINTR) return false;
      written += std::max<ssize_t>(count, 0);
    }
    return true;
  }
  bool setMode(mode_t mode) const { return ::fchmod(descriptor_, mode) == 0; }
  /// Some file systems tell of a failed write only now.
  bool close() { return ::close(std::exchange(descriptor_, -1)) == 0; }

 private:
  int descriptor_;
};

/// The copy that grows under its temporary name; gone when it goes, unless it was put in place.
class HalfMade {
 public:
  explicit HalfMade(const fs::path& target)
      : target_(target),
        path_(target.parent_path() / bytesOf(u".vantle-new-"_s + QUuid::createUuid().toString(QUuid::Id128))) {}
  ~HalfMade() {
    if (!isMade_) return;
    std::error_code code;
    makeWritable(path_);
    for (const fs::path& folder : folders_) makeWritable(folder);
    fs::remove_all(path_, code);
  }
  HalfMade(const HalfMade&) = delete;
  HalfMade& operator=(const HalfMade&) = delete;

  const fs::path& path() const { return path_; }
  bool make() { return isMade_ = ::mkdir(path_.c_str(), S_IRWXU) == 0; }
  bool addFolder(const fs::path& folder) {
    if (::mkdir(folder.c_str(), S_IRWXU) != 0) return false;
    folders_.push_back(folder);
    return true;
  }
  /// A folder that has come there meanwhile is replaced only if it is empty.
  bool putInPlace() {
    if (::rename(path_.c_str(), target_.c_str()) != 0) return false;
    isMade_ = false;
    return true;
  }

 private:
  /// What is in a folder without the right to write cannot be removed.
  static void makeWritable(const fs::path& folder) { ::chmod(folder.c_str(), S_IRWXU); }

  fs::path target_;
  fs::path path_;
  std::vector<fs::path> folders_;
  bool isMade_ = false;
};

class Copier {
 public:
  Copier(fs::path source, const QString& name, CopyProgress& progress, const std::stop_token& stop)
      : source_(std::move(source)), name_(QFile::encodeName(name)), progress_(progress), stop_(stop) {}

  Done copy(const TemplatePlan& plan, HalfMade& made) {
    if (!made.make()) return failedCall(made.path());
    for (const PlannedEntry& entry : plan.entries) {
      if (stop_.stop_requested()) return cancelled();
      if (const Done copied = copyEntry(entry, made); !copied) return copied;
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

  Done copyEntry(const PlannedEntry& entry, HalfMade& made) {
    const fs::path to = made.path() / named(entry.path);
    switch (entry.kind) {
      case PlannedEntry::Kind::folder:
        if (!made.addFolder(to)) return failedMake(entry);
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
    if (const Done copied = copyBytes(from, input, output); !copied) return copied;
    if (!output.setMode(modeOf(entry.permissions)) || !output.close()) return failedCall(from);
    ++progress_.files;
    return {};
  }

  Done copyBytes(const fs::path& from, const OpenFile& input, const OpenFile& output) {
    // One byte more tells a file that is too large from one that just fits.
    const auto first = input.read(TemplateCopy::kLargestText + 1);
    if (!first) return failedCall(from);
    const bool isReplaced =
        first->size() <= TemplateCopy::kLargestText && first->contains(kPlaceholder) && isText(*first);
    if (!output.write(isReplaced ? named(*first) : *first)) return failedCall(from);
    progress_.bytes += first->size();
    return first->size() <= TemplateCopy::kLargestText ? Done() : copyRest(from, input, output);
  }

  Done copyRest(const fs::path& from, const OpenFile& input, const OpenFile& output) {
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

}  // namespace

std::expected<QString, CopyError> TemplateCopy::run(CopyProgress& progress, const std::stop_token& stop) const {
  const fs::path target = bytesOf(this->target());
  if (const QString problem = projectNameProblem(name_); !problem.isEmpty()) return failed(FileError{name_, problem});
  std::error_code code;
  if (fs::exists(fs::symlink_status(target, code))) return failed(FileError{this->target(), u"it exists already"_s});
  if (!fs::is_directory(bytesOf(place_), code)) return failed(FileError{place_, u"there is no such folder"_s});
  const auto plan = TemplatePlan::make(bytesOf(source_), stop);
  if (!plan) return failed(plan.error());
  progress.totalFiles = plan->files;
  progress.totalBytes = plan->bytes;

  HalfMade made(target);
  const Done copied = Copier(bytesOf(source_), name_, progress, stop).copy(*plan, made);
  if (stop.stop_requested()) return cancelled();
  if (!copied) return std::unexpected(copied.error());
  if (fs::exists(fs::symlink_status(target, code))) return failed(FileError{this->target(), u"it exists already"_s});
  if (!made.putInPlace()) return failedCall(target);
  return this->target();
}
