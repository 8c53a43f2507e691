#pragma once

#include <QString>
#include <QUrl>

class Updater;

/// Where new versions are described, and who makes them. A plain value.
struct UpdateSource {
  /// The folder that holds a description for each system and processor ("macos-arm64.json"); empty: there is none.
  QUrl folder;
  /// As `Updater::verify` takes it.
  QString publisher;

  static UpdateSource ofThisBuild();
  /// Whether an installation that `updater` looks after is brought up to date from here.
  bool serves(const Updater& updater) const;
};
