#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>

#include <optional>
#include <vector>

#include "tools/generate_image/image_options.h"

/// What is kept about one generated image, beside the image itself.
struct HistoryEntry {
  /// The name of its two files, without their suffixes. By name they are in the order of their making.
  QString id;
  QString prompt;
  ImageOptions options;
  bool isEdit = false;
  /// How many images went with the prompt; they are not kept.
  int references = 0;
  QDateTime date;
  /// What its files take on the disk.
  qint64 bytes = 0;

  bool operator==(const HistoryEntry&) const = default;
};

/// An id for an image made at `time`, unlike any other.
QString makeHistoryID(const QDateTime& time);
/// When an image of that id was made; none for the name of any other file.
std::optional<QDateTime> timeOfHistoryID(const QString& id);

QJsonObject encode(const HistoryEntry& entry);
/// None for anything that `encode` has not made.
std::optional<HistoryEntry> decodeHistoryEntry(const QString& id, const QJsonObject& object);

/// The images in a folder, the newest first: for each "<id>.png", a regular file that begins as a PNG, and a readable
/// "<id>.json". Everything else is passed over. Takes its time; any thread.
std::vector<HistoryEntry> readHistory(const QString& folder);
