#include "base/json_file.h"

#include <QFile>
#include <QFileInfo>

#include <filesystem>
#include <system_error>

#include "base/atomic_file.h"

namespace {

QString freeCorruptName(const QString& path) {
  const QString first = path + QStringLiteral(".corrupt");
  QString name = first;
  for (int number = 2; QFileInfo::exists(name); ++number) name = first + QStringLiteral("-%1").arg(number);
  return name;
}

}  // namespace

JsonFile::JsonFile(QString path) : path_(std::move(path)) {}

std::expected<QJsonDocument, FileError> JsonFile::read() {
  const QFileInfo info(path_);
  if (!info.exists() && !info.isSymLink()) return QJsonDocument();

  keepOld_ = true;
  const auto bytes = readBytes();
  if (!bytes) return std::unexpected(bytes.error());
  QJsonParseError parsing;
  QJsonDocument document = QJsonDocument::fromJson(*bytes, &parsing);
  if (document.isNull()) return std::unexpected(FileError{path_, parsing.errorString()});
  keepOld_ = false;
  return document;
}

std::expected<QByteArray, FileError> JsonFile::readBytes() {
  const QFileInfo info(path_);
  if (!info.isFile()) return std::unexpected(FileError{path_, QStringLiteral("not a regular file")});
  if (info.size() > kMaximumSize) return std::unexpected(FileError{path_, QStringLiteral("too large")});
  QFile file(path_);
  if (!file.open(QIODevice::ReadOnly)) return std::unexpected(FileError{path_, file.errorString()});
  return file.read(kMaximumSize);
}

std::expected<void, FileError> JsonFile::write(const QJsonDocument& document) {
  if (keepOld_) {
    if (auto kept = setAside(); !kept) return kept;
  }
  return writeFileAtomically(path_, document.toJson(QJsonDocument::Indented));
}

std::expected<void, FileError> JsonFile::setAside() {
  const QString aside = freeCorruptName(path_);
  // A second name instead of a rename: the file is under its own name at every instant, whenever the process dies.
  std::error_code error;
  std::filesystem::create_hard_link(path_.toStdString(), aside.toStdString(), error);
  if (error && QFileInfo::exists(path_) && !QFile::rename(path_, aside))
    return std::unexpected(FileError{path_, QStringLiteral("the unreadable file cannot be set aside")});
  keepOld_ = false;
  return {};
}
