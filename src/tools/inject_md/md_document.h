#pragma once

#include <QJsonObject>
#include <QString>
#include <QUuid>

/// One instruction file for agents that can be put into a project.
struct MDDocument {
  QUuid id;
  QString fileName;
  /// The text that is written.
  QString contents;

  bool operator==(const MDDocument&) const = default;
};

bool decode(const QJsonValue& value, MDDocument& out);
QJsonObject encode(const MDDocument& document);

/// What is wrong with a name for a file that goes directly into a folder, as a sentence's end ("is empty"); empty text:
/// nothing.
QString fileNameFault(const QString& fileName);
