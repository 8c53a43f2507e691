#pragma once

#include <QString>

/// The launcher, as the tools' palettes know it. Main thread only.
class LauncherOpener {
 public:
  virtual ~LauncherOpener() = default;

  /// Shows the launcher with that tool highlighted; an empty id highlights the first.
  virtual void showLauncher(const QString& selectedToolID) = 0;
  /// Whether the launcher started the tool that is being activated; asking clears it.
  virtual bool takeStartedFromLauncher() = 0;
};
