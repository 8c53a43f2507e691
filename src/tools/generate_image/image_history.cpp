#include "tools/generate_image/image_history.h"

#include <algorithm>

#include "base/background.h"

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t kMostThumbnails = 1000;

QImage thumbnailOf(const QImage& picture) {
  constexpr int kEdge = ImageHistory::kThumbnailEdge;
  if (picture.isNull()) return {};
  const QImage small = picture.scaled(kEdge, kEdge, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
  return small.copy((small.width() - kEdge) / 2, (small.height() - kEdge) / 2, kEdge, kEdge);
}

}  // namespace

ImageHistory::ImageHistory(const QString& folder) : folder_(folder) { disk_.setMaxThreadCount(1); }

ImageHistory::~ImageHistory() { close(); }

template <class Work, class Done>
void ImageHistory::onDisk(Work work, Done done) {
  if (isClosed_) return;
  runInBackground(job_, [work = std::move(work)](const std::stop_token&) { return work(); }, std::move(done), disk_);
}

template <class Work, class Done>
void ImageHistory::changeDisk(Work work, Done done) {
  onDisk(std::move(work), std::move(done));
  if (loading_.isRunning()) load();
}

void ImageHistory::load() {
  if (isClosed_) return;
  loading_ = Job::start();
  const auto work = [folder = folder_](const std::stop_token& stop) {
    if (stop.stop_requested()) return std::vector<HistoryEntry>();
    folder.sweep();
    return folder.entries();
  };
  runInBackground(loading_, work, [this](std::vector<HistoryEntry> found) { takeOver(std::move(found)); }, disk_);
}

void ImageHistory::takeOver(std::vector<HistoryEntry> found) {
  loading_.cancel();
  const bool isNews = !std::exchange(isLoaded_, true) || found != entries_;
  entries_ = std::move(found);
  std::erase_if(thumbnails_, [this](const auto& one) { return !find(one.first); });
  trim();
  if (isNews) Q_EMIT changed();
}

const HistoryEntry* ImageHistory::find(const QString& id) const {
  const auto entry = std::ranges::find(entries_, id, &HistoryEntry::id);
  return entry == entries_.end() ? nullptr : &*entry;
}

qint64 ImageHistory::totalBytes() const {
  qint64 total = 0;
  for (const HistoryEntry& entry : entries_) total += entry.bytes;
  return total;
}

void ImageHistory::add(HistoryEntry entry, const GeneratedImage& image, const std::vector<QByteArray>& references) {
  if (!isLoaded_ && !loading_.isRunning()) load();
  entry.bytes = HistoryFolder::bytesOf(entry, image.png, references);
  thumbnails_[entry.id] = thumbnailOf(image.picture);
  entries_.insert(entries_.begin(), entry);
  changeDisk([folder = folder_, entry, png = image.png, references] { return folder.write(entry, png, references); },
             [this, id = entry.id](const std::expected<void, FileError>& written) {
               if (written) return;
               forget(id);
               Q_EMIT changed();
               Q_EMIT failed(written.error().reason);
             });
  trim();
  Q_EMIT changed();
}

void ImageHistory::setLimit(qint64 limit) {
  limit_ = limit;
  const std::size_t before = entries_.size();
  trim();
  if (entries_.size() != before) Q_EMIT changed();
}

void ImageHistory::trim() {
  const QStringList ids = surplus(entries_, limit_);
  for (const QString& id : ids) forget(id);
  if (!ids.isEmpty()) removeFiles(ids);
}

/// By value: the caller may well name the entry that goes.
void ImageHistory::remove(QString id) {
  if (!find(id)) return;
  forget(id);
  removeFiles({id});
  Q_EMIT changed();
}

void ImageHistory::removeAll() {
  entries_.clear();
  thumbnails_.clear();
  const auto work = [folder = folder_] {
    folder.removeAll();
    return true;
  };
  changeDisk(work, [](bool) {});
  Q_EMIT changed();
}

void ImageHistory::forget(const QString& id) {
  std::erase_if(entries_, [&id](const HistoryEntry& entry) { return entry.id == id; });
  thumbnails_.erase(id);
}

void ImageHistory::removeFiles(const QStringList& ids) {
  const auto work = [folder = folder_, ids] {
    folder.remove(ids);
    return true;
  };
  changeDisk(work, [](bool) {});
}

void ImageHistory::open(const HistoryEntry& entry, const JobRef& job,
                        std::function<void(std::optional<KeptImage>)> done) {
  const auto work = [folder = folder_, entry](const std::stop_token& stop) {
    return stop.stop_requested() ? std::nullopt : folder.read(entry);
  };
  runInBackground(job, work, std::move(done), disk_);
}

QImage ImageHistory::thumbnail(const QString& id) {
  if (const auto known = thumbnails_.find(id); known != thumbnails_.end()) return known->second;
  if (!find(id) || !asked_.insert(id).second) return {};
  const auto work = [folder = folder_, id](const std::stop_token& stop) {
    const auto image = stop.stop_requested() ? std::nullopt : folder.readImage(id);
    return thumbnailOf(image ? image->picture : QImage());
  };
  runInBackground(job_, work, [this, id](const QImage& picture) { takeThumbnail(id, picture); });
  return {};
}

/// One that cannot be shown is remembered too, and not asked for again.
void ImageHistory::takeThumbnail(const QString& id, const QImage& picture) {
  asked_.erase(id);
  if (!find(id)) return;
  if (thumbnails_.size() >= kMostThumbnails) thumbnails_.erase(thumbnails_.begin());
  thumbnails_[id] = picture;
  Q_EMIT thumbnailReady(id);
}

void ImageHistory::close() {
  isClosed_ = true;
  disk_.waitForDone();
}
