#include "tools/inject_md/inject_md_settings.h"

#include <algorithm>

#include "tools/inject_md/well_known_templates.h"

using namespace Qt::StringLiterals;

namespace {

/// Of the file that everybody starts with: the same at each start, although nothing is saved before the first change.
constexpr QUuid kFirstID(0x6f1d2c54, 0x3b0a, 0x4e57, 0x9a, 0x41, 0x0d, 0x8e, 0x52, 0xc7, 0x13, 0xb6);

/// The name in the layout of earlier versions: one that cannot be a file's counts as not understood.
struct SingleFileName {
  QString text;
};

bool decode(const QJsonValue& value, SingleFileName& out) {
  if (!decode(value, out.text)) return false;
  return fileNameFault(out.text).isEmpty();
}

}  // namespace

bool decode(const QJsonValue& value, std::vector<MDDocument>& out) {
  if (!value.isArray()) return false;
  out.clear();
  bool isWhole = true;
  for (const QJsonValue& entry : value.toArray()) {
    MDDocument document;
    if (decode(entry, document))
      out.push_back(std::move(document));
    else
      isWhole = false;
  }
  return isWhole;
}

InjectMDSettings::InjectMDSettings()
    : documents{{kFirstID, u"AGENTS.md"_s, wellKnownTemplate(u"AGENTS.md"_s)}}, defaultDocumentID(kFirstID) {}

void InjectMDSettings::read(JsonReader& reader) {
  std::vector<MDDocument> stored;
  MDDocument single{QUuid(), {}, {}};
  QString defaultID;
  reader.read("documents"_L1, stored);
  SingleFileName name;
  const bool hasName = reader.read("fileName"_L1, name);
  const bool hasSingle = reader.read("template"_L1, single.contents) && hasName;
  single.fileName = name.text;
  if (stored.empty() && hasSingle) stored.push_back(single);
  reader.read("defaultDocumentID"_L1, defaultID);
  if (stored.empty()) return;
  take(std::move(stored));
  defaultDocumentID = QUuid::fromString(defaultID);
  if (!find(defaultDocumentID)) defaultDocumentID = documents.front().id;
}

void InjectMDSettings::take(std::vector<MDDocument> stored) {
  documents.clear();
  for (MDDocument& document : stored) {
    // Two files under one id could not be told apart: the later one gets its own.
    if (document.id.isNull() || find(document.id)) document.id = QUuid::createUuid();
    documents.push_back(std::move(document));
  }
}

void InjectMDSettings::write(QJsonObject& object) const {
  QJsonArray array;
  for (const MDDocument& document : documents) array.append(encode(document));
  object.insert("documents"_L1, array);
  object.insert("defaultDocumentID"_L1, defaultDocument().id.toString(QUuid::WithoutBraces).toUpper());
}

const MDDocument& InjectMDSettings::defaultDocument() const {
  const MDDocument* chosen = find(defaultDocumentID);
  return chosen ? *chosen : documents.front();
}

const MDDocument* InjectMDSettings::find(const QUuid& id) const {
  const auto found = std::ranges::find(documents, id, &MDDocument::id);
  return found == documents.end() ? nullptr : &*found;
}

const MDDocument* InjectMDSettings::find(const QString& fileName) const {
  const auto found = std::ranges::find(documents, fileName, &MDDocument::fileName);
  return found == documents.end() ? nullptr : &*found;
}

MDDocument* InjectMDSettings::document(const QUuid& id) {
  const auto found = std::ranges::find(documents, id, &MDDocument::id);
  return found == documents.end() ? nullptr : &*found;
}

std::expected<QUuid, QString> InjectMDSettings::add(const QString& fileName) {
  const QString name = fileName.trimmed();
  if (const QString fault = fileNameFault(name); !fault.isEmpty())
    return std::unexpected(u"The file name %1."_s.arg(fault));
  if (find(name)) return std::unexpected(u"%1 is in the list already."_s.arg(name));
  const QString known = wellKnownTemplate(name);
  const QUuid id = QUuid::createUuid();
  documents.push_back({id, name, known.isNull() ? u"# %1\n"_s.arg(name) : known});
  return id;
}

void InjectMDSettings::setContents(const QUuid& id, const QString& contents) {
  if (MDDocument* edited = document(id)) edited->contents = contents;
}

void InjectMDSettings::makeDefault(const QUuid& id) {
  if (find(id)) defaultDocumentID = id;
}

void InjectMDSettings::remove(const QUuid& id) {
  if (documents.size() < 2) return;
  std::erase_if(documents, [&](const MDDocument& document) { return document.id == id; });
  defaultDocumentID = defaultDocument().id;
}

void InjectMDSettings::resetToDefault(const QUuid& id) {
  MDDocument* reset = document(id);
  const QString known = reset ? wellKnownTemplate(reset->fileName) : QString();
  if (!known.isNull()) reset->contents = known;
}
