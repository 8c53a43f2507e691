#pragma once

#include <QUuid>

#include <vector>

#include "core/settings/store.h"

/// One template folder.
struct Boilerplate {
  QUuid id;
  QString name;
  /// Absolute.
  QString path;

  bool operator==(const Boilerplate&) const = default;
};

/// False, with `out` holding those that could be read, unless every entry has all its keys.
bool decode(const QJsonValue& value, std::vector<Boilerplate>& out);

/// The user's template folders and where the last project was made, "boilerplates.json".
struct BoilerplateSettings {
  static constexpr const char* kStoreName = "BoilerplateStore";

  std::vector<Boilerplate> templates;
  /// Empty before the first project.
  QString lastPlace;

  bool operator==(const BoilerplateSettings&) const = default;
  void read(JsonReader& reader);
  void write(QJsonObject& object) const;

  /// Adds a folder under its own name; one that is in the list already is not added again. Answers its id.
  QUuid add(const QString& path);
  /// A blank name changes nothing. Answers the name that it has then.
  QString rename(const QUuid& id, const QString& name);
  void remove(const QUuid& id);
  /// By name, case ignored where no name matches exactly. Null without one.
  const Boilerplate* find(const QString& name) const;
};

using BoilerplateStore = Store<BoilerplateSettings>;
