#include "platform/x11/xsettings.h"

#include <QDataStream>
#include <QIODevice>

namespace {

enum SettingType : quint8 { kInteger = 0, kString = 1, kColor = 2 };
constexpr quint8 kBigEndian = 1;

/// Names and strings are padded to four bytes.
qint64 padded(quint32 size) { return (qint64{size} + 3) / 4 * 4; }

struct Setting {
  QByteArray name;
  std::optional<std::int32_t> integer;
};

QByteArray readPadded(QDataStream& in, quint32 size) {
  if (padded(size) > in.device()->bytesAvailable()) {
    in.setStatus(QDataStream::ReadPastEnd);
    return {};
  }
  QByteArray bytes(size, Qt::Uninitialized);
  in.readRawData(bytes.data(), static_cast<int>(size));
  in.skipRawData(static_cast<int>(padded(size) - size));
  return bytes;
}

Setting readSetting(QDataStream& in) {
  quint8 type = 0;
  quint8 unused = 0;
  quint16 nameSize = 0;
  quint32 serial = 0;
  in >> type >> unused >> nameSize;
  Setting setting{readPadded(in, nameSize), {}};
  in >> serial;
  if (type == kString) {
    quint32 size = 0;
    in >> size;
    readPadded(in, size);
  } else if (type == kColor) {
    quint64 color = 0;
    in >> color;
  } else if (type == kInteger) {
    qint32 value = 0;
    in >> value;
    setting.integer = value;
  } else {
    in.setStatus(QDataStream::ReadCorruptData);
  }
  return setting;
}

}  // namespace

std::optional<std::int32_t> integerSetting(const QByteArray& published, QByteArrayView name) {
  QDataStream in(published);
  quint8 byteOrder = 0;
  quint32 serial = 0;
  quint32 count = 0;
  in >> byteOrder;
  in.setByteOrder(byteOrder == kBigEndian ? QDataStream::BigEndian : QDataStream::LittleEndian);
  in.skipRawData(3);
  in >> serial >> count;
  while (count-- > 0 && in.status() == QDataStream::Ok)
    if (const Setting setting = readSetting(in); in.status() == QDataStream::Ok && setting.name == name)
      return setting.integer;
  return {};
}
