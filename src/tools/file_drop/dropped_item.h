#pragma once

#include <QString>

#include <stop_token>
#include <vector>

/// A file or folder that the user wants to upload, and what is known about it.
struct DroppedItem {
  /// Absolute, as it was given; a link to a file or folder stands for what it leads to.
  QString path;
  bool isMeasured = false;
  bool isFolder = false;
  /// Of a folder: all the files in it. Links in it count nothing and are not followed.
  qint64 bytes = 0;
  /// How many files a folder holds.
  qint64 files = 0;
  /// Why it cannot be uploaded; empty when it can.
  QString fault{};

  bool operator==(const DroppedItem&) const = default;

  /// Its last path component.
  QString name() const;
};

/// Looks at what stands at `path` now; files are not opened. Blocking. What was counted by then when asked to stop.
DroppedItem measured(const QString& path, const std::stop_token& stop);

/// The sizes of all together.
qint64 totalBytes(const std::vector<DroppedItem>& items);
