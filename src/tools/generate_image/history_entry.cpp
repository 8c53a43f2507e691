#include "tools/generate_image/history_entry.h"

#include <QDir>
#include <QJsonDocument>
#include <QRandomGenerator>

#include "base/regular_file.h"
#include "capture/image_decoding.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kLargestRecord = 256 * 1024;
constexpr qsizetype kLongestPrompt = 100'000;
constexpr qsizetype kMostEntries = 20'000;
constexpr int kMostReferences = 1000;
/// The bytes that every PNG begins with.
constexpr qint64 kSignature = 8;

/// "20261121-223455123-5f3a"
const QString kTimeFormat = u"yyyyMMdd-HHmmsszzz"_s;
constexpr int kTimeLength = 18;
constexpr int kMarkLength = 4;

bool isMark(QStringView text) {
  constexpr QLatin1StringView kDigits{"0123456789abcdef"};
  return text.size() == kMarkLength && std::ranges::all_of(text, [&](QChar one) { return kDigits.contains(one); });
}

std::optional<HistoryEntry> readEntry(const QDir& folder, const QString& id) {
  const auto record = openRegularFile(folder.filePath(id + u".json"_s));
  if (!record || (*record)->size() > kLargestRecord) return std::nullopt;
  auto entry = decodeHistoryEntry(id, QJsonDocument::fromJson((*record)->read(kLargestRecord)).object());
  const auto image = entry ? openRegularFile(folder.filePath(id + u".png"_s)) : std::unexpected(FileError{});
  if (!image || !isPNG((*image)->peek(kSignature))) return std::nullopt;
  entry->bytes = (*record)->size() + (*image)->size();
  return entry;
}

}  // namespace

QString makeHistoryID(const QDateTime& time) {
  const quint32 mark = QRandomGenerator::global()->bounded(0x10000U);
  return time.toUTC().toString(kTimeFormat) + u"-%1"_s.arg(mark, kMarkLength, 16, QLatin1Char('0'));
}

std::optional<QDateTime> timeOfHistoryID(const QString& id) {
  if (id.size() != kTimeLength + 1 + kMarkLength || id[kTimeLength] != u'-' ||
      !isMark(QStringView(id).last(kMarkLength)))
    return std::nullopt;
  QDateTime time = QDateTime::fromString(id.left(kTimeLength), kTimeFormat);
  time.setTimeSpec(Qt::UTC);
  return time.isValid() ? std::optional(time) : std::nullopt;
}

QJsonObject encode(const HistoryEntry& entry) {
  return {{u"prompt"_s, entry.prompt},
          {u"size"_s, rawValue(entry.options.size)},
          {u"quality"_s, rawValue(entry.options.quality)},
          {u"edit"_s, entry.isEdit},
          {u"references"_s, entry.references},
          {u"date"_s, entry.date.toUTC().toString(Qt::ISODateWithMs)}};
}

std::optional<HistoryEntry> decodeHistoryEntry(const QString& id, const QJsonObject& object) {
  const auto time = timeOfHistoryID(id);
  const QJsonValue prompt = object.value("prompt"_L1);
  if (!time || !prompt.isString()) return std::nullopt;
  HistoryEntry entry;
  entry.id = id;
  entry.prompt = prompt.toString().left(kLongestPrompt);
  entry.date = *time;
  decode(object.value("size"_L1), entry.options.size);
  decode(object.value("quality"_L1), entry.options.quality);
  entry.isEdit = object.value("edit"_L1).toBool();
  entry.references = std::clamp(object.value("references"_L1).toInt(), 0, kMostReferences);
  return entry;
}

std::vector<HistoryEntry> readHistory(const QString& folder) {
  const QDir directory(folder);
  std::vector<HistoryEntry> entries;
  const QStringList names =
      directory.entryList({u"*.json"_s}, QDir::Files | QDir::NoSymLinks, QDir::Name | QDir::Reversed);
  for (const QString& name : names.first(std::min(names.size(), kMostEntries)))
    if (auto entry = readEntry(directory, name.chopped(5))) entries.push_back(*std::move(entry));
  return entries;
}
