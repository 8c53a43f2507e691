#include "service/ai/picture_kind.h"

QByteArray pictureType(const QByteArray& bytes) {
  if (bytes.startsWith("\x89PNG\r\n\x1a\n")) return "image/png";
  if (bytes.startsWith("\xff\xd8\xff")) return "image/jpeg";
  if (bytes.startsWith("GIF87a") || bytes.startsWith("GIF89a")) return "image/gif";
  if (bytes.startsWith("RIFF") && bytes.mid(8, 4) == "WEBP") return "image/webp";
  return {};
}

QByteArray pictureSuffix(const QByteArray& type) {
  return type == "image/jpeg" ? "jpg" : type.mid(type.indexOf('/') + 1);
}
