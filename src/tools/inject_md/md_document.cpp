#include "tools/inject_md/md_document.h"

#include <algorithm>

#include "base/json_reader.h"

using namespace Qt::StringLiterals;

namespace {

/// In bytes: what the usual Linux file systems allow (NAME_MAX).
constexpr qsizetype kLongestName = 255;

}  // namespace

bool decode(const QJsonValue& value, MDDocument& out) {
  if (!value.isObject()) return false;
  JsonReader reader(value.toObject());
  MDDocument document;
  QString id;
  reader.read("id"_L1, id);
  document.id = QUuid::fromString(id);
  const bool isWhole = reader.read("fileName"_L1, document.fileName) && reader.read("template"_L1, document.contents);
  if (!isWhole || !fileNameFault(document.fileName).isEmpty()) return false;
  out = std::move(document);
  return true;
}

QJsonObject encode(const MDDocument& document) {
  return {{u"id"_s, document.id.toString(QUuid::WithoutBraces).toUpper()},
          {u"fileName"_s, document.fileName},
          {u"template"_s, document.contents}};
}

QString fileNameFault(const QString& fileName) {
  const auto isControl = [](QChar character) { return character.category() == QChar::Other_Control; };
  if (fileName.trimmed().isEmpty()) return u"is empty"_s;
  if (fileName == "."_L1 || fileName == ".."_L1) return u"names a folder"_s;
  if (fileName.contains(u'/')) return u"has a slash in it"_s;
  if (std::ranges::any_of(fileName, isControl)) return u"has a control character in it"_s;
  if (!fileName.isValidUtf16()) return u"is not valid text"_s;
  return fileName.toUtf8().size() > kLongestName ? u"is too long"_s : QString();
}
