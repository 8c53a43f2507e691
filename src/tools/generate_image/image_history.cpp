#include "tools/generate_image/image_history.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>

#include <algorithm>

#include "base/atomic_file.h"
#include "base/background.h"
#include "base/regular_file.h"

using namespace Qt::StringLiterals;

namespace {

/// Another process may be between its two files.
constexpr qint64 kLeftoverSeconds = 3600;
constexpr std::size_t kMostThumbnails = 1000;

QString imageFile(const QString& folder, const QString& id) { return folder + u'/' + id + u".png"_s; }
QString recordFile(const QString& folder, const QString& id) { return folder + u'/' + id + u".json"_s; }

std::expected<void, FileError> write(const QString& folder, const HistoryEntry& entry, const QByteArray& png) {
  if (auto image = writeFileAtomically(imageFile(folder, entry.id), png); !image) return image;
  auto record = writeFileAtomically(recordFile(folder, entry.id), QJsonDocument(encode(entry)).toJson());
  if (!record) QFile::remove(imageFile(folder, entry.id));
  return record;
}

void removeFrom(const QString& folder, const QString& id) {
  QFile::remove(recordFile(folder, id));
  QFile::remove(imageFile(folder, id));
}

/// Images without a record: the program died between the two.
void sweep(const QString& folder) {
  const QDir directory(folder);
  const QDateTime now = QDateTime::currentDateTimeUtc();
  for (const QFileInfo& file : directory.entryInfoList({u"*.png"_s}, QDir::Files | QDir::NoSymLinks)) {
    const QString id = file.completeBaseName();
    if (!timeOfHistoryID(id) || file.lastModified().secsTo(now) < kLeftoverSeconds) continue;
    if (!QFileInfo::exists(recordFile(folder, id))) QFile::remove(file.filePath());
  }
}

std::optional<GeneratedImage> read(const QString& path) {
  const auto file = openRegularFile(path);
  if (!file || (*file)->size() > kLargestGeneration) return std::nullopt;
  return asGeneratedImage((*file)->read(kLargestGeneration));
}

QImage thumbnailOf(const QImage& picture) {
  constexpr int kEdge = ImageHistory::kThumbnailEdge;
  if (picture.isNull()) return {};
  const QImage small = picture.scaled(kEdge, kEdge, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
  return small.copy((small.width() - kEdge) / 2, (small.height() - kEdge) / 2, kEdge, kEdge);
}

/// Those of the end that do not fit, but for the first.
QStringList surplus(const std::vector<HistoryEntry>& entries, qint64 limit) {
  QStringList ids;
  qint64 total = 0;
  for (const HistoryEntry& entry : entries) {
    total += entry.bytes;
    if (total > limit && &entry != &entries.front()) ids.append(entry.id);
  }
  return ids;
}

}  // namespace

ImageHistory::ImageHistory(QString folder) : folder_(std::move(folder)) { disk_.setMaxThreadCount(1); }

ImageHistory::~ImageHistory() { close(); }

template <class Work, class Done>
void ImageHistory::onDisk(Work work, Done done) {
  if (isClosed_) return;
  runInBackground(job_, [work = std::move(work)](const std::stop_token&) { return work(); }, std::move(done), disk_);
}

void ImageHistory::load() {
  if (std::exchange(isAsked_, true)) return;
  onDisk(
      [folder = folder_] {
        sweep(folder);
        return readHistory(folder);
      },
      [this](std::vector<HistoryEntry> found) { takeOver(std::move(found)); });
}

/// What was added meanwhile is newer, and may have been found too.
void ImageHistory::takeOver(std::vector<HistoryEntry> found) {
  isLoaded_ = true;
  std::erase_if(found, [this](const HistoryEntry& entry) { return find(entry.id) != nullptr; });
  entries_.insert(entries_.end(), std::make_move_iterator(found.begin()), std::make_move_iterator(found.end()));
  std::ranges::stable_sort(entries_, std::greater(), &HistoryEntry::id);
  trim();
  Q_EMIT changed();
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

void ImageHistory::add(HistoryEntry entry, const GeneratedImage& image) {
  load();
  entry.bytes = image.png.size() + QJsonDocument(encode(entry)).toJson().size();
  thumbnails_[entry.id] = thumbnailOf(image.picture);
  entries_.insert(entries_.begin(), entry);
  onDisk([folder = folder_, entry, png = image.png] { return write(folder, entry, png); },
         [this, id = entry.id](const Result& written) {
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
  QStringList ids;
  for (const HistoryEntry& entry : entries_) ids.append(entry.id);
  entries_.clear();
  thumbnails_.clear();
  removeFiles(ids);
  Q_EMIT changed();
}

void ImageHistory::forget(const QString& id) {
  std::erase_if(entries_, [&id](const HistoryEntry& entry) { return entry.id == id; });
  thumbnails_.erase(id);
}

void ImageHistory::removeFiles(const QStringList& ids) {
  onDisk(
      [folder = folder_, ids] {
        for (const QString& id : ids) removeFrom(folder, id);
        return true;
      },
      [](bool) {});
}

QString ImageHistory::path(const QString& id) const { return imageFile(folder_, id); }

void ImageHistory::open(const QString& id, const JobRef& job, std::function<void(std::optional<GeneratedImage>)> done) {
  runInBackground(job, [file = path(id)](const std::stop_token&) { return read(file); }, std::move(done), disk_);
}

QImage ImageHistory::thumbnail(const QString& id) {
  if (const auto known = thumbnails_.find(id); known != thumbnails_.end()) return known->second;
  if (!find(id) || !asked_.insert(id).second) return {};
  const auto work = [file = path(id)](const std::stop_token& stop) {
    const auto image = stop.stop_requested() ? std::nullopt : read(file);
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
