#include "core/net/install_identity.h"

#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include "base/atomic_file.h"
#include "base/logging.h"

namespace {

/// A UUID has 36 characters; more than this is not one.
constexpr qint64 kMaximumSize = 1024;

QString readID(const QString& path) {
  QFile file(path);
  if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) return {};
  return QString::fromUtf8(file.read(kMaximumSize)).trimmed();
}

}  // namespace

const QString& InstallIdentity::id() {
  if (!id_.isEmpty()) return id_;
  id_ = readID(path_);
  if (id_.isEmpty()) {
    id_ = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    if (const auto saved = writeFileAtomically(path_, id_.toUtf8()); !saved)
      qCWarning(lcSettings).noquote() << "InstallIdentity save failed:" << saved.error().description();
  }
  return id_;
}
