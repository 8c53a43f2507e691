#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>

#include <optional>

#include "tools/generate_image/image_request.h"

/// What is kept about one generated image, beside the images themselves.
struct HistoryEntry {
  /// What the names of its files begin with. By name they are in the order of their making.
  QString id;
  QString prompt;
  ImageOptions options;
  bool isEdit = false;
  /// How many images went with the prompt.
  int references = 0;
  QDateTime date;
  /// What its files take on the disk.
  qint64 bytes = 0;

  bool operator==(const HistoryEntry&) const = default;
};

/// An entry of a new id for an image that was made at `time`; its bytes are not known yet.
HistoryEntry entryOf(const ImageRequest& request, const QDateTime& time);

/// An id for an image made at `time`, unlike any other.
QString makeHistoryID(const QDateTime& time);
/// When an image of that id was made; none for any other text.
std::optional<QDateTime> timeOfHistoryID(const QString& id);
/// The id that the name of a file begins with; empty for the name of a file that is none of the history's.
QString historyIDOf(const QString& fileName);

QJsonObject encode(const HistoryEntry& entry);
/// None for anything that `encode` has not made.
std::optional<HistoryEntry> decodeHistoryEntry(const QString& id, const QJsonObject& object);
