#pragma once

#include <QJsonObject>
#include <QObject>

#include <utility>

#include "base/json_file.h"
#include "base/json_reader.h"

/// The untyped half of every store: the file, the log line and the signal.
class StoreBase : public QObject {
  Q_OBJECT

 Q_SIGNALS:
  /// The record has changed and, unless the log says otherwise, is on disk.
  void changed();

 protected:
  StoreBase(QString path, const char* name) : file_(std::move(path)), name_(name) {}

  /// The file's object; empty when there is none or it cannot be read, which is nothing to report.
  QJsonObject loadObject();
  void keepBeforeOverwriting() { file_.keepBeforeOverwriting(); }
  /// Writes at once; a failure is logged as "<name> save failed: " and the error.
  void saveObject(const QJsonObject& object);

 private:
  JsonFile file_;
  const char* name_;
};

/// One settings record in one JSON file: loaded once, with a default for every key that is missing or unreadable, and
/// saved at each real change. Main thread only.
///
/// Record needs `operator==`, `void read(JsonReader&)`, `void write(QJsonObject&) const` and a constant `kStoreName`,
/// the name in the log. Keys that the record does not know are written back untouched.
template <class Record>
class Store : public StoreBase {
 public:
  explicit Store(QString path) : StoreBase(std::move(path), Record::kStoreName) {
    JsonReader reader(loadObject());
    record_.read(reader);
    foreign_ = reader.unknown();
    if (reader.hasMisfits()) keepBeforeOverwriting();
  }

  const Record& value() const { return record_; }

  /// Applies `change` to the record; when that really changed it, saves at once and emits `changed()`.
  template <class Change>
  void update(Change change) {
    Record next = record_;
    std::forward<Change>(change)(next);
    if (next == record_) return;
    record_ = std::move(next);
    QJsonObject object = foreign_;
    record_.write(object);
    saveObject(object);
    Q_EMIT changed();
  }

 private:
  Record record_;
  QJsonObject foreign_;
};
