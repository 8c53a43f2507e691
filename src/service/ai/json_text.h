#pragma once

#include <QJsonArray>
#include <QJsonDocument>

/// `text` as JSON writes it, with its quotes. Requests with pictures are put together from bytes: as a document the
/// pictures would stand in memory several times over.
inline QByteArray jsonText(const QString& text) {
  const QByteArray array = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
  return array.mid(1, array.size() - 2);
}
