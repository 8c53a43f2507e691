#pragma once

#include <QString>
#include <QStringList>

#include <expected>
#include <optional>
#include <vector>

#include "base/file_error.h"
#include "tools/generate_image/generated_image.h"
#include "tools/generate_image/history_entry.h"

/// A picture and what it was made from.
struct KeptImage {
  GeneratedImage image;
  ImageRequest request;
  /// Not all of the images that went with the prompt are there any more; then `request` has none.
  bool lacksReferences = false;
};

/// The generated images on the disk: for each "<id>.png", the images that went with the prompt as "<id>-1.png" and so
/// on, and what was asked for as "<id>.json". The record comes last and goes first, so that whenever a program dies an
/// image is kept whole or not at all; what is left over is swept. Several programs may use the folder at once.
/// Everything blocks; any thread.
class HistoryFolder {
 public:
  explicit HistoryFolder(QString path) : path_(std::move(path)) {}

  QString imageFile(const QString& id) const { return file(id, ".png"); }

  /// What `write` would take of the disk, in bytes.
  static qint64 bytesOf(const HistoryEntry& entry, const QByteArray& png, const std::vector<QByteArray>& references);
  /// On an error nothing of it is left.
  std::expected<void, FileError> write(const HistoryEntry& entry, const QByteArray& png,
                                       const std::vector<QByteArray>& references) const;
  /// None when the image itself cannot be read any more.
  std::optional<KeptImage> read(const HistoryEntry& entry) const;
  std::optional<GeneratedImage> readImage(const QString& id) const;

  /// All that have a readable record and an image that begins as a PNG, the newest first; what else lies in the folder
  /// is passed over.
  std::vector<HistoryEntry> entries() const;
  void remove(const QStringList& ids) const;
  /// What is damaged, half written or not known yet too.
  void removeAll() const;
  /// Removes the oldest until the rest, or the newest alone, takes at most `limit` bytes.
  void trim(qint64 limit) const;
  /// Removes what a program that died has left.
  void sweep() const;

 private:
  QString file(const QString& id, const char* suffix) const { return path_ + u'/' + id + QLatin1String(suffix); }
  QString referenceFile(const QString& id, std::size_t number) const;
  std::optional<HistoryEntry> entry(const QString& id) const;
  bool isWhole(const QString& fileName, const QString& id) const;

  QString path_;
};

/// Those at the end that do not fit in `limit` bytes, but for the first.
QStringList surplus(const std::vector<HistoryEntry>& entries, qint64 limit);
