#include "base/json_reader.h"

#include <cmath>
#include <limits>

bool decode(const QJsonValue& value, bool& out) {
  if (!value.isBool()) return false;
  out = value.toBool();
  return true;
}

bool decode(const QJsonValue& value, int& out) {
  const double number = value.toDouble(std::nan(""));
  if (number != std::floor(number) || std::abs(number) > std::numeric_limits<int>::max()) return false;
  out = static_cast<int>(number);
  return true;
}

bool decode(const QJsonValue& value, double& out) {
  if (!value.isDouble()) return false;
  out = value.toDouble();
  return true;
}

bool decode(const QJsonValue& value, QString& out) {
  if (!value.isString()) return false;
  out = value.toString();
  return true;
}

bool decode(const QJsonValue& value, QStringList& out) {
  if (!value.isArray()) return false;
  out.clear();
  bool whole = true;
  for (const QJsonValue& entry : value.toArray()) {
    if (entry.isString())
      out.append(entry.toString());
    else
      whole = false;
  }
  return whole;
}

QJsonObject JsonReader::unknown() const {
  QJsonObject rest = object_;
  for (const QString& key : known_) rest.remove(key);
  return rest;
}
