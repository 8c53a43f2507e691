#include "tools/generate_image/history_entry.h"

#include <QRandomGenerator>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestPrompt = 100'000;

/// "20261121-223455123-5f3a"
const QString kTimeFormat = u"yyyyMMdd-HHmmsszzz"_s;
constexpr int kTimeLength = 18;
constexpr int kMarkLength = 4;
constexpr int kLength = kTimeLength + 1 + kMarkLength;

bool isMark(QStringView text) {
  constexpr QLatin1StringView kDigits{"0123456789abcdef"};
  return text.size() == kMarkLength && std::ranges::all_of(text, [&](QChar one) { return kDigits.contains(one); });
}

}  // namespace

HistoryEntry entryOf(const ImageRequest& request, const QDateTime& time) {
  return {.id = makeHistoryID(time),
          .prompt = request.prompt.left(kLongestPrompt),
          .options = request.options,
          .isEdit = request.isEdit,
          .references = static_cast<int>(request.references.size()),
          .date = time,
          .bytes = 0};
}

QString makeHistoryID(const QDateTime& time) {
  // The system's, which no two programs draw alike.
  const quint32 mark = QRandomGenerator::system()->bounded(0x10000U);
  return time.toUTC().toString(kTimeFormat) + u"-%1"_s.arg(mark, kMarkLength, 16, QLatin1Char('0'));
}

std::optional<QDateTime> timeOfHistoryID(const QString& id) {
  if (id.size() != kLength || id[kTimeLength] != u'-' || !isMark(QStringView(id).last(kMarkLength)))
    return std::nullopt;
  QDateTime time = QDateTime::fromString(id.left(kTimeLength), kTimeFormat);
  time.setTimeSpec(Qt::UTC);
  return time.isValid() ? std::optional(time) : std::nullopt;
}

QString historyIDOf(const QString& fileName) {
  const QString id = fileName.left(kLength);
  const QString rest = fileName.mid(kLength);
  const bool isOurs = (rest.startsWith(u'.') || rest.startsWith(u'-')) && timeOfHistoryID(id);
  return isOurs ? id : QString();
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
  entry.references =
      std::clamp(object.value("references"_L1).toInt(), 0, static_cast<int>(ImageRequest::kMostReferences));
  return entry;
}
