#include "tools/generate_image/history_folder.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>

#include <algorithm>

#include "base/atomic_file.h"
#include "base/regular_file.h"
#include "capture/image_decoding.h"

using namespace Qt::StringLiterals;

namespace {

/// More than a picture of all the pixels that are decoded takes.
constexpr qint64 kLargestImage = 512 * 1024 * 1024;
constexpr qint64 kLargestRecord = 1024 * 1024;
constexpr qsizetype kMostEntries = 20'000;
/// The bytes that every PNG begins with.
constexpr qint64 kSignature = 8;
/// Another program may be between its files.
constexpr qint64 kLeftoverSeconds = 3600;

QByteArray recordOf(const HistoryEntry& entry) { return QJsonDocument(encode(entry)).toJson(); }

QByteArray contents(const QString& path) {
  const auto file = openRegularFile(path);
  if (!file || (*file)->size() > kLargestImage) return {};
  return (*file)->read(kLargestImage);
}

/// Links are taken for themselves.
QFileInfoList filesIn(const QString& folder) {
  return QDir(folder).entryInfoList(QDir::Files | QDir::Hidden | QDir::System);
}

}  // namespace

QString HistoryFolder::referenceFile(const QString& id, std::size_t number) const {
  return file(id + u'-' + QString::number(number), ".png");
}

qint64 HistoryFolder::bytesOf(const HistoryEntry& entry, const QByteArray& png,
                              const std::vector<QByteArray>& references) {
  qint64 bytes = png.size() + recordOf(entry).size();
  for (const QByteArray& reference : references) bytes += reference.size();
  return bytes;
}

std::expected<void, FileError> HistoryFolder::write(const HistoryEntry& entry, const QByteArray& png,
                                                    const std::vector<QByteArray>& references) const {
  auto written = writeFileAtomically(imageFile(entry.id), png);
  for (std::size_t i = 0; written && i < references.size(); ++i)
    written = writeFileAtomically(referenceFile(entry.id, i + 1), references[i]);
  if (written) written = writeFileAtomically(file(entry.id, ".json"), recordOf(entry));
  if (!written) remove({entry.id});
  return written;
}

std::optional<GeneratedImage> HistoryFolder::readImage(const QString& id) const {
  return asGeneratedImage(contents(imageFile(id)));
}

std::optional<KeptImage> HistoryFolder::read(const HistoryEntry& entry) const {
  auto image = readImage(entry.id);
  if (!image) return std::nullopt;
  KeptImage kept{*std::move(image), {entry.prompt, entry.options, entry.isEdit, {}}, false};
  std::vector<QByteArray>& references = kept.request.references;
  for (int number = 1; number <= entry.references; ++number)
    references.push_back(contents(referenceFile(entry.id, static_cast<std::size_t>(number))));
  kept.lacksReferences = !std::ranges::all_of(references, &isPNG);
  // None may take the place of another.
  if (kept.lacksReferences) references.clear();
  return kept;
}

std::optional<HistoryEntry> HistoryFolder::entry(const QString& id) const {
  const auto record = openRegularFile(file(id, ".json"));
  if (!record || (*record)->size() > kLargestRecord) return std::nullopt;
  auto entry = decodeHistoryEntry(id, QJsonDocument::fromJson((*record)->read(kLargestRecord)).object());
  const auto image = entry ? openRegularFile(imageFile(id)) : std::unexpected(FileError{});
  if (!image || !isPNG((*image)->peek(kSignature))) return std::nullopt;
  entry->bytes = (*record)->size() + (*image)->size();
  for (int number = 1; number <= entry->references; ++number)
    entry->bytes += QFileInfo(referenceFile(id, static_cast<std::size_t>(number))).size();
  return entry;
}

std::vector<HistoryEntry> HistoryFolder::entries() const {
  std::vector<HistoryEntry> entries;
  const QStringList names =
      QDir(path_).entryList({u"*.json"_s}, QDir::Files | QDir::NoSymLinks, QDir::Name | QDir::Reversed);
  for (const QString& name : names.first(std::min(names.size(), kMostEntries)))
    if (auto found = entry(name.chopped(5))) entries.push_back(*std::move(found));
  return entries;
}

void HistoryFolder::remove(const QStringList& ids) const {
  for (const QString& id : ids) {
    QFile::remove(file(id, ".json"));
    QFile::remove(imageFile(id));
    for (std::size_t number = 1; number <= ImageRequest::kMostReferences; ++number)
      QFile::remove(referenceFile(id, number));
  }
}

void HistoryFolder::removeAll() const {
  for (const QFileInfo& info : filesIn(path_))
    if (!historyIDOf(info.fileName()).isEmpty()) QFile::remove(info.filePath());
}

void HistoryFolder::trim(qint64 limit) const { remove(surplus(entries(), limit)); }

/// Whether a file of the history has the others that it needs.
bool HistoryFolder::isWhole(const QString& fileName, const QString& id) const {
  const QString rest = fileName.mid(id.size());
  if (rest == ".json"_L1) return QFileInfo::exists(imageFile(id));
  const bool isImage = rest == ".png"_L1 || (rest.startsWith(u'-') && rest.endsWith(".png"_L1));
  return isImage && QFileInfo::exists(file(id, ".json"));
}

void HistoryFolder::sweep() const {
  const QDateTime now = QDateTime::currentDateTimeUtc();
  for (const QFileInfo& info : filesIn(path_)) {
    const QString id = historyIDOf(info.fileName());
    if (id.isEmpty() || isWhole(info.fileName(), id)) continue;
    if (info.lastModified().secsTo(now) >= kLeftoverSeconds) QFile::remove(info.filePath());
  }
}

QStringList surplus(const std::vector<HistoryEntry>& entries, qint64 limit) {
  QStringList ids;
  qint64 total = 0;
  for (const HistoryEntry& entry : entries) {
    total += entry.bytes;
    if (total > limit && &entry != &entries.front()) ids.append(entry.id);
  }
  return ids;
}
