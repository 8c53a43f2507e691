#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>

/// The whole file; empty when it cannot be read.
inline QByteArray readFile(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Writes a whole file, folders included.
inline bool writeFile(const QString& path, const QByteArray& bytes) {
  QDir().mkpath(QFileInfo(path).path());
  QFile file(path);
  return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}
