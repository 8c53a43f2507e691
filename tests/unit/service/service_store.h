#pragma once

#include <QTemporaryDir>

#include "service/storage/schema.h"
#include "service/storage/write_queue.h"

/// A service's database in a folder of its own.
struct ServiceStore {
  QTemporaryDir folder;
  Database database{*DatabaseLocation::parse({}, folder.path())};
  bool isReady = Schema::migrate(database.connection()).has_value();
  WriteQueue writes{database};

  Connection& connection() { return database.connection(); }
};
