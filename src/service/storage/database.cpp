#include "service/storage/database.h"

#include <atomic>
#include <map>
#include <memory>

namespace {

std::atomic<quint64> made = 0;

std::map<quint64, std::unique_ptr<Connection>>& ofThisThread() {
  thread_local std::map<quint64, std::unique_ptr<Connection>> connections;
  return connections;
}

}  // namespace

Database::Database(DatabaseLocation location) : location_(std::move(location)), number_(++made) {}

Database::~Database() { ofThisThread().erase(number_); }

Connection& Database::connection() {
  auto& connection = ofThisThread()[number_];
  if (!connection) connection = std::make_unique<Connection>(location_);
  return *connection;
}
