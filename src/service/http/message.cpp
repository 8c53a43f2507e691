#include "service/http/message.h"

qint64 Request::bodySize() const {
  if (headers.contains("transfer-encoding")) return -1;
  const QByteArray length = header("content-length");
  if (length.isEmpty()) return 0;
  bool isNumber = false;
  const qint64 size = length.toLongLong(&isNumber);
  return isNumber ? size : -1;
}
