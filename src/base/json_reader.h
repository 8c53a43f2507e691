#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QSet>
#include <QString>
#include <QStringList>

#include <map>

/// Decoding of single JSON values. Each answers whether the whole value was understood; a value of another type leaves
/// `out` as it is, a list or map keeps the entries that could be read.
bool decode(const QJsonValue& value, bool& out);
bool decode(const QJsonValue& value, int& out);
bool decode(const QJsonValue& value, double& out);
bool decode(const QJsonValue& value, QString& out);
bool decode(const QJsonValue& value, QStringList& out);

template <class Value>
bool decode(const QJsonValue& value, std::map<QString, Value>& out) {
  if (!value.isObject()) return false;
  out.clear();
  bool whole = true;
  const QJsonObject object = value.toObject();
  for (auto it = object.begin(); it != object.end(); ++it) {
    Value entry{};
    if (decode(it.value(), entry))
      out.emplace(it.key(), std::move(entry));
    else
      whole = false;
  }
  return whole;
}

/// Reads the keys of one JSON object, each optional on its own, and remembers what it did not understand.
class JsonReader {
 public:
  explicit JsonReader(QJsonObject object) : object_(std::move(object)) {}

  /// Leaves `out` alone when the key is missing, null or of another type, and answers whether it was there and whole.
  template <class Value>
  bool read(QLatin1StringView key, Value& out) {
    known_.insert(key);
    const QJsonValue value = object_.value(key);
    if (value.isUndefined() || value.isNull()) return false;
    const bool whole = decode(value, out);
    misfits_ = misfits_ || !whole;
    return whole;
  }

  /// Whether a key that was read held something that could not be understood whole.
  bool hasMisfits() const { return misfits_; }
  /// The keys nobody asked for; writing them back keeps what a newer version stored.
  QJsonObject unknown() const;

 private:
  QJsonObject object_;
  QSet<QString> known_;
  bool misfits_ = false;
};
