#include "tools/boilerplates/boilerplate_settings.h"

#include <QDir>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool decode(const QJsonObject& object, Boilerplate& out) {
  JsonReader reader(object);
  QString id;
  const bool isWhole = reader.read("id"_L1, id) && reader.read("name"_L1, out.name) && reader.read("path"_L1, out.path);
  out.id = QUuid::fromString(id);
  return isWhole && !out.id.isNull() && QDir::isAbsolutePath(out.path);
}

QJsonObject encode(const Boilerplate& boilerplate) {
  return {{"id"_L1, boilerplate.id.toString(QUuid::WithoutBraces).toUpper()},
          {"name"_L1, boilerplate.name},
          {"path"_L1, boilerplate.path}};
}

/// The root of a disk has no name of its own.
QString folderName(const QString& path) {
  const QString name = QDir(path).dirName();
  return name.isEmpty() ? path : name;
}

}  // namespace

bool decode(const QJsonValue& value, std::vector<Boilerplate>& out) {
  if (!value.isArray()) return false;
  out.clear();
  bool isWhole = true;
  QSet<QUuid> seen;
  for (const QJsonValue& entry : value.toArray()) {
    Boilerplate boilerplate;
    if (!decode(entry.toObject(), boilerplate)) {
      isWhole = false;
      continue;
    }
    if (seen.contains(boilerplate.id)) boilerplate.id = QUuid::createUuid();
    seen.insert(boilerplate.id);
    out.push_back(std::move(boilerplate));
  }
  return isWhole;
}

void BoilerplateSettings::read(JsonReader& reader) {
  reader.read("templates"_L1, templates);
  reader.read("lastPlace"_L1, lastPlace);
}

void BoilerplateSettings::write(QJsonObject& object) const {
  QJsonArray array;
  for (const Boilerplate& boilerplate : templates) array.append(encode(boilerplate));
  object.insert("templates"_L1, array);
  object.insert("lastPlace"_L1, lastPlace);
}

QUuid BoilerplateSettings::add(const QString& path) {
  const QString clean = QDir::cleanPath(QDir(path).absolutePath());
  const auto known = std::ranges::find(templates, clean, &Boilerplate::path);
  if (known != templates.end()) return known->id;
  templates.push_back({QUuid::createUuid(), folderName(clean), clean});
  return templates.back().id;
}

QString BoilerplateSettings::rename(const QUuid& id, const QString& name) {
  const auto found = std::ranges::find(templates, id, &Boilerplate::id);
  if (found == templates.end()) return {};
  if (!name.trimmed().isEmpty()) found->name = name.trimmed();
  return found->name;
}

void BoilerplateSettings::remove(const QUuid& id) {
  std::erase_if(templates, [&](const Boilerplate& boilerplate) { return boilerplate.id == id; });
}

const Boilerplate* BoilerplateSettings::find(const QString& name) const {
  for (const Qt::CaseSensitivity sensitivity : {Qt::CaseSensitive, Qt::CaseInsensitive}) {
    const auto found = std::ranges::find_if(
        templates, [&](const Boilerplate& boilerplate) { return boilerplate.name.compare(name, sensitivity) == 0; });
    if (found != templates.end()) return &*found;
  }
  return nullptr;
}
