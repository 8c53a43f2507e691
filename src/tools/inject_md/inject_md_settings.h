#pragma once

#include <expected>
#include <vector>

#include "core/settings/store.h"
#include "tools/inject_md/md_document.h"

/// The files that can be put into projects, "inject-md.json". There is always at least one.
struct InjectMDSettings {
  static constexpr const char* kStoreName = "InjectMDStore";

  /// AGENTS.md alone, as after a fresh installation.
  InjectMDSettings();

  std::vector<MDDocument> documents;
  /// Null, or of no document: the first one.
  QUuid defaultDocumentID;

  bool operator==(const InjectMDSettings&) const = default;
  /// Takes the layout of earlier versions, which had one document and no list, as well.
  void read(JsonReader& reader);
  void write(QJsonObject& object) const;

  const MDDocument& defaultDocument() const;
  /// Null when no document has that id, or that name.
  const MDDocument* find(const QUuid& id) const;
  const MDDocument* find(const QString& fileName) const;

  /// Appends a file under its name without spaces around it, with its well-known contents if it has them. Error: what
  /// is wrong with the name, as a sentence.
  std::expected<QUuid, QString> add(const QString& fileName);
  /// The rest change nothing for an unknown id.
  void setContents(const QUuid& id, const QString& contents);
  void makeDefault(const QUuid& id);
  /// The last file stays.
  void remove(const QUuid& id);
  /// Nothing for a file that is not well known.
  void resetToDefault(const QUuid& id);

 private:
  void take(std::vector<MDDocument> stored);
  MDDocument* document(const QUuid& id);
};

using InjectMDStore = Store<InjectMDSettings>;
