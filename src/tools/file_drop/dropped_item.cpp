#include "tools/file_drop/dropped_item.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <unistd.h>

#include <filesystem>
#include <limits>

using namespace Qt::StringLiterals;

namespace fs = std::filesystem;

namespace {

qint64 sum(qint64 left, qint64 right) {
  constexpr qint64 kMost = std::numeric_limits<qint64>::max();
  return left > kMost - right ? kMost : left + right;
}

fs::path nativePath(const QString& path) { return QFile::encodeName(path).toStdString(); }

/// Adds up a folder, one level at a time: a deep one holds no descriptors open.
class Tally {
 public:
  Tally(DroppedItem& item, const std::stop_token& stop) : item_(item), stop_(stop) {}

  void add(const fs::path& folder) {
    waiting_.push_back(folder);
    while (!waiting_.empty() && !stop_.stop_requested()) {
      const fs::path next = std::move(waiting_.back());
      waiting_.pop_back();
      list(next);
    }
  }

 private:
  void list(const fs::path& folder) {
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator() && !stop_.stop_requested(); entry.increment(error)) take(*entry);
  }

  void take(const fs::directory_entry& entry) {
    std::error_code error;
    const auto type = entry.symlink_status(error).type();
    if (type == fs::file_type::directory) return waiting_.push_back(entry.path());
    if (type != fs::file_type::regular) return;
    const auto size = entry.file_size(error);
    item_.bytes = sum(item_.bytes, error ? 0 : static_cast<qint64>(size));
    ++item_.files;
  }

  DroppedItem& item_;
  const std::stop_token& stop_;
  std::vector<fs::path> waiting_;
};

bool isReadable(const fs::path& path) { return ::access(path.c_str(), R_OK) == 0; }

}  // namespace

QString DroppedItem::name() const {
  const QString name = QFileInfo(path).fileName();
  return name.isEmpty() ? path : name;
}

DroppedItem measured(const QString& path, const std::stop_token& stop) {
  DroppedItem item{.path = path, .isMeasured = true};
  const fs::path native = nativePath(path);
  std::error_code error;
  const fs::file_status status = fs::status(native, error);
  item.isFolder = status.type() == fs::file_type::directory;
  const bool isFile = status.type() == fs::file_type::regular;
  if (status.type() == fs::file_type::not_found)
    item.fault = u"There is no such file or folder."_s;
  else if (!item.isFolder && !isFile)
    item.fault = u"Only files and folders can be uploaded."_s;
  else if (!isReadable(native))
    item.fault = u"You have no permission to read it."_s;
  else if (item.isFolder)
    Tally(item, stop).add(native);
  else
    item.bytes = static_cast<qint64>(fs::file_size(native, error));
  if (isFile) item.files = 1;
  return item;
}

qint64 totalBytes(const std::vector<DroppedItem>& items) {
  qint64 total = 0;
  for (const DroppedItem& item : items) total = sum(total, item.bytes);
  return total;
}
