#include "base/folder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

bool makePrivateFolder(const QString& path) {
  constexpr auto kMode = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
  if (QFileInfo(path).isDir()) return true;
  const QString parent = QFileInfo(path).path();
  if (parent == path || !makePrivateFolder(parent)) return false;
  return QDir().mkdir(path, kMode) || QFileInfo(path).isDir();
}
