#include "tools/file_drop/bulk_upload_error.h"

#include "base/byte_count.h"
#include "base/visible_text.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kShownName = 80;

}  // namespace

BulkUploadError BulkUploadError::zipFailed(const QString& message) {
  return {u"Couldn't create the zip: "_s + message, true};
}

BulkUploadError BulkUploadError::tooLarge(qint64 bytes) {
  return {
      u"That's %1 — the maximum upload size is 256 MB. Remove some items and try again."_s.arg(byteCountText(bytes)),
      true};
}

BulkUploadError BulkUploadError::unusable(const QString& name, const QString& reason) {
  return {u"%1: %2"_s.arg(visibleLine(name, kShownName), reason), true};
}
