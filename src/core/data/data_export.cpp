#include "core/data/data_export.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <filesystem>
#include <system_error>

#include "base/atomic_file.h"
#include "base/regular_file.h"
#include "core/data/credential_free.h"

using namespace Qt::StringLiterals;
namespace fs = std::filesystem;

namespace {

using Kind = DataExportError::Kind;
using Outcome = std::expected<void, DataExportError>;

constexpr qint64 kChunk = 256 * 1024;
/// Nobody exports more often on one day.
constexpr int kMostExports = 1000;

std::unexpected<DataExportError> failure(Kind kind, const QString& path = {}, const QString& reason = {}) {
  return std::unexpected(DataExportError{kind, {path, reason}});
}

/// Copies a tree. Stops at the first thing that goes wrong.
class TreeCopy {
 public:
  TreeCopy(QString root, const std::stop_token& stop) : root_(std::move(root)), stop_(stop) {}

  Outcome copyFolder(const QString& from, const QString& to) {
    std::error_code error;
    for (fs::directory_iterator entry(from.toStdString(), error), end; !error && entry != end; entry.increment(error)) {
      if (stop_.stop_requested()) return failure(Kind::cancelled);
      if (const Outcome copied = copyEntry(*entry, to); !copied) return copied;
    }
    if (error) return failure(Kind::unreadable, from, QString::fromStdString(error.message()));
    return {};
  }

  ExportedData take() { return std::move(exported_); }

 private:
  Outcome copyEntry(const fs::directory_entry& entry, const QString& folder) {
    const std::string path = entry.path().native();
    const QString from = QString::fromStdString(path);
    // A name that is no text could not be given to the copy.
    const bool isText = from.toStdString() == path;
    std::error_code error;
    const fs::file_status status = entry.symlink_status(error);
    const QString to = folder + u'/' + QFileInfo(from).fileName();
    if (isText && fs::is_regular_file(status)) return copyFile(from, to);
    if (isText && fs::is_directory(status)) return makeFolder(to) ? copyFolder(from, to) : notMade(to);
    leaveOut(from);
    return {};
  }

  Outcome copyFile(const QString& from, const QString& to) {
    switch (credentialsIn(QFileInfo(from).fileName())) {
      case Credentials::none:
        return copyBytes(from, to);
      case Credentials::known:
        return copyWithoutCredentials(from, to);
      case Credentials::unknown:
        leaveOut(from);
        return {};
    }
    return {};
  }

  Outcome copyBytes(const QString& from, const QString& to) {
    const auto source = openRegularFile(from);
    // A save of this moment: what it wrote stands under the file's own name by now.
    if (!source && !QFileInfo::exists(from)) return {};
    if (!source) return failure(Kind::unreadable, from, source.error().reason);
    QFile target(to);
    if (!target.open(QIODevice::NewOnly | QIODevice::WriteOnly, QFile::ReadOwner | QFile::WriteOwner))
      return failure(Kind::notWritten, to, target.errorString());
    while (!(*source)->atEnd()) {
      if (stop_.stop_requested()) return failure(Kind::cancelled);
      const QByteArray chunk = (*source)->read(kChunk);
      if (chunk.isEmpty()) return failure(Kind::unreadable, from, (*source)->errorString());
      if (target.write(chunk) != chunk.size()) return failure(Kind::notWritten, to, target.errorString());
    }
    if (!target.flush()) return failure(Kind::notWritten, to, target.errorString());
    ++exported_.files;
    return {};
  }

  Outcome copyWithoutCredentials(const QString& from, const QString& to) {
    const auto document = readWithoutCredentials(from);
    if (!document) {
      leaveOut(from);
      return {};
    }
    const auto written = writeFileAtomically(to, document->toJson(QJsonDocument::Indented));
    if (!written) return failure(Kind::notWritten, to, written.error().reason);
    ++exported_.files;
    return {};
  }

  static bool makeFolder(const QString& path) {
    return QDir().mkdir(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  }
  static Outcome notMade(const QString& path) {
    return failure(Kind::notWritten, path, u"the folder cannot be created"_s);
  }

  void leaveOut(const QString& path) { exported_.leftOut.append(QDir(root_).relativeFilePath(path)); }

  ExportedData exported_;
  QString root_;
  const std::stop_token& stop_;
};

}  // namespace

QString DataExportError::description() const {
  switch (kind) {
    case Kind::nothingThere:
      return u"There is no data to export yet."_s;
    case Kind::insideTheData:
      return u"An export cannot contain itself: choose a folder outside of Vantle's own."_s;
    case Kind::unreadable:
      return u"Nothing was exported, because a file could not be read: %1"_s.arg(cause.description());
    case Kind::cancelled:
      return u"The export was cancelled. Nothing was kept of it."_s;
    case Kind::notWritten:
      break;
  }
  return u"Nothing was exported: %1"_s.arg(cause.description());
}

std::expected<ExportedData, DataExportError> DataExport::run(const std::stop_token& stop) const {
  if (const auto allowed = check(); !allowed) return std::unexpected(allowed.error());
  QTemporaryDir partial(destination_ + u"/.vantle-export-XXXXXX"_s);
  if (!partial.isValid()) return failure(Kind::notWritten, destination_, partial.errorString());
  TreeCopy copy(data_, stop);
  if (const Outcome copied = copy.copyFolder(data_, partial.path()); !copied) return std::unexpected(copied.error());
  const auto folder = putInPlace(partial.path());
  if (!folder) return std::unexpected(folder.error());
  partial.setAutoRemove(false);
  ExportedData exported = copy.take();
  exported.folder = *folder;
  return exported;
}

std::expected<void, DataExportError> DataExport::check() const {
  const QString data = QFileInfo(data_).canonicalFilePath();
  if (data.isEmpty() || !QFileInfo(data).isDir()) return failure(Kind::nothingThere);
  const QString destination = QFileInfo(destination_).canonicalFilePath();
  if (destination.isEmpty()) return failure(Kind::notWritten, destination_, u"there is no such folder"_s);
  if ((destination + u'/').startsWith(data + u'/')) return failure(Kind::insideTheData);
  return {};
}

std::expected<QString, DataExportError> DataExport::putInPlace(const QString& partial) const {
  const QString first = destination_ + u"/Vantle export "_s + day_.toString(Qt::ISODate);
  for (int number = 1; number <= kMostExports; ++number) {
    QString path = number == 1 ? first : first + u" %1"_s.arg(number);
    const QFileInfo info(path);
    if (info.exists() || info.isSymLink()) continue;
    if (QDir().rename(partial, path)) return path;
    break;
  }
  return failure(Kind::notWritten, first, u"the folder cannot be put in place"_s);
}
