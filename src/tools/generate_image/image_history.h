#pragma once

#include <QImage>
#include <QObject>
#include <QThreadPool>

#include <functional>
#include <map>
#include <set>

#include "base/job.h"
#include "tools/generate_image/history_folder.h"

/// The images that were generated, by this program and by others on the same disk. Main thread only; the disk is waited
/// for on a thread of its own.
class ImageHistory final : public QObject {
  Q_OBJECT

 public:
  /// Thumbnails are squares that lie in the middle of their pictures, in pixels.
  static constexpr int kThumbnailEdge = 128;

  explicit ImageHistory(const QString& folder);
  /// What is being written is written whole.
  ~ImageHistory() override;

  /// Reads the folder, anew at each call.
  void load();
  bool isLoaded() const { return isLoaded_; }
  /// The newest first.
  const std::vector<HistoryEntry>& entries() const { return entries_; }
  /// Null when it is gone.
  const HistoryEntry* find(const QString& id) const;
  qint64 totalBytes() const;

  /// The room that all of them may take, in bytes: the oldest are removed until the rest, or the newest alone, fits.
  void setLimit(qint64 limit);
  /// Keeps an image; `entry.id` is a new one.
  void add(HistoryEntry entry, const GeneratedImage& image, const std::vector<QByteArray>& references = {});
  void remove(QString id);
  /// Those of other programs too, known here or not.
  void removeAll();

  /// The file of an image; it may not be there yet.
  QString path(const QString& id) const { return folder_.imageFile(id); }
  /// Answers, later, with a kept image; nothing when it cannot be read.
  void open(const HistoryEntry& entry, const JobRef& job, std::function<void(std::optional<KeptImage>)> done);
  /// The picture in the list; null until it is there, which `thumbnailReady` tells.
  QImage thumbnail(const QString& id);

  /// Waits for the disk, and writes nothing any more.
  void close();

 Q_SIGNALS:
  /// Images have come or gone.
  void changed();
  void thumbnailReady(const QString& id);
  /// An image could not be kept.
  void failed(const QString& reason);

 private:
  template <class Work, class Done>
  void onDisk(Work work, Done done);
  /// The same for what changes the folder: what is read of it meanwhile is out of date.
  template <class Work, class Done>
  void changeDisk(Work work, Done done);
  void takeOver(std::vector<HistoryEntry> found);
  void forget(const QString& id);
  void trim();
  void removeFiles(const QStringList& ids);
  void takeThumbnail(const QString& id, const QImage& picture);

  HistoryFolder folder_;
  std::vector<HistoryEntry> entries_;
  std::map<QString, QImage> thumbnails_;
  std::set<QString> asked_;
  qint64 limit_ = 500'000'000;
  bool isLoaded_ = false;
  bool isClosed_ = false;
  Job job_ = Job::start();
  /// Runs while the folder is read.
  Job loading_;
  /// One thread: what is done to the folder is done in its order.
  QThreadPool disk_;
};
