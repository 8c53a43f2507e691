#include "service/command/place.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <fcntl.h>
#include <sys/file.h>

#include <chrono>
#include <thread>

#include "base/folder.h"
#include "service/storage/schema.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kLockPatience = 5s;
constexpr auto kLockInterval = 50ms;

QString standardFolder() {
  return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/vantle-service"_s;
}

}  // namespace

QStringList Place::options() { return {u"data"_s, u"database"_s}; }

std::expected<std::unique_ptr<Place>, QString> Place::open(const Arguments& arguments) {
  const QString folder = QDir(arguments.value(u"data"_s, standardFolder())).absolutePath();
  if (!makePrivateFolder(folder)) return std::unexpected(u"the folder '%1' cannot be made"_s.arg(folder));
  const auto location = DatabaseLocation::parse(arguments.value(u"database"_s), folder);
  if (!location) return std::unexpected(location.error());
  std::unique_ptr<Place> place(new Place(folder, *location));
  if (const auto prepared = place->blobs_.prepare(); !prepared) return std::unexpected(prepared.error());
  if (const auto migrated = Schema::migrate(place->database_.connection()); !migrated)
    return std::unexpected(migrated.error());
  return place;
}

bool Place::lock() {
  constexpr mode_t kMode = 0600;
  lock_ = Descriptor(::open(QFile::encodeName(folder_ + u"/lock"_s).constData(), O_RDWR | O_CREAT | O_CLOEXEC, kMode));
  const auto deadline = std::chrono::steady_clock::now() + kLockPatience;
  while (lock_ && flock(lock_.number(), LOCK_EX | LOCK_NB) != 0) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(kLockInterval);
  }
  return static_cast<bool>(lock_);
}
