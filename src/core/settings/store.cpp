#include "core/settings/store.h"

#include "base/logging.h"

QJsonObject StoreBase::loadObject() {
  const auto document = file_.read();
  if (!document) return {};
  if (!document->isNull() && !document->isObject()) file_.keepBeforeOverwriting();
  return document->object();
}

void StoreBase::saveObject(const QJsonObject& object) {
  const auto saved = file_.write(QJsonDocument(object));
  if (!saved) qCWarning(lcSettings).noquote() << name_ << "save failed:" << saved.error().description();
}
