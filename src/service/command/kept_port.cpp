#include "service/command/kept_port.h"

#include <QFile>
#include <QSaveFile>

std::uint16_t KeptPort::value() const {
  QFile file(path_);
  return file.open(QIODevice::ReadOnly) ? file.read(16).trimmed().toUShort() : std::uint16_t{0};
}

/// A port that cannot be kept costs old links, and nothing else.
void KeptPort::keep(std::uint16_t port) const {
  QSaveFile file(path_);
  if (!file.open(QIODevice::WriteOnly)) return;
  file.write(QByteArray::number(port) + '\n');
  file.commit();
}
