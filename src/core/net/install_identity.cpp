#include "core/net/install_identity.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QUuid>

#include "base/folder.h"
#include "base/logging.h"

namespace {

/// A UUID has 36 characters; more than this is not one.
constexpr qint64 kMaximumSize = 1024;

QString readID(const QString& path) {
  QFile file(path);
  if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) return {};
  return QString::fromUtf8(file.read(kMaximumSize)).trimmed();
}

bool writeID(const QString& path, const QString& id) {
  if (!makePrivateFolder(QFileInfo(path).path())) return false;
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly)) return false;
  file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
  file.write(id.toUtf8());
  return file.commit();
}

}  // namespace

const QString& InstallIdentity::id() {
  if (!id_.isEmpty()) return id_;
  id_ = readID(path_);
  if (id_.isEmpty()) {
    id_ = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    if (!writeID(path_, id_)) qCWarning(lcSettings).noquote() << "InstallIdentity save failed:" << path_;
  }
  return id_;
}
