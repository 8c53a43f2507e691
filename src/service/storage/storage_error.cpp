#include "service/storage/storage_error.h"

#include <cerrno>
#include <cstring>

using namespace Qt::StringLiterals;

QString StorageError::description() const {
  switch (reason) {
    case Reason::full:
      return u"The service's disk is full."_s;
    case Reason::conflict:
      return u"That is there already."_s;
    case Reason::unavailable:
      break;
  }
  return u"The service cannot reach its storage."_s;
}

StorageError StorageError::fromErrno(const QString& what, int number) {
  const bool isFull = number == ENOSPC || number == EDQUOT || number == EFBIG;
  return {isFull ? Reason::full : Reason::unavailable, what + u": "_s + QString::fromLocal8Bit(std::strerror(number))};
}
