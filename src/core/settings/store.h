#pragma once

#include <QJsonObject>
#include <QObject>

#include <utility>

#include "base/json_file.h"
#include "base/json_reader.h"

/// The untyped half of every store: the file, the log line and the signal.
class StoreBase : public QObject {
  Q_OBJECT

 public:
  /// Holds saves back while it lives; what changed meanwhile is written once, at its end. For the moments in which a
  /// disk that takes its time would keep the user's next key from where it belongs.
  class [[nodiscard]] HeldSaves {
   public:
    explicit HeldSaves(StoreBase& store) : store_(store) { ++store_.holds_; }
    ~HeldSaves() {
      if (--store_.holds_ == 0 && std::exchange(store_.isUnsaved_, false)) store_.saveNow();
    }
    HeldSaves(const HeldSaves&) = delete;
    HeldSaves& operator=(const HeldSaves&) = delete;

   private:
    StoreBase& store_;
  };

 Q_SIGNALS:
  /// The record has changed and is on disk, unless the log says otherwise or a HeldSaves still lives.
  void changed();

 protected:
  StoreBase(QString path, const char* name) : file_(std::move(path)), name_(name) {}

  /// The file's object; empty when there is none or it cannot be read, which is nothing to report.
  QJsonObject loadObject();
  void keepBeforeOverwriting() { file_.keepBeforeOverwriting(); }
  /// Writes now, or when the last HeldSaves ends.
  void save() {
    if (holds_ > 0)
      isUnsaved_ = true;
    else
      saveNow();
  }
  virtual void saveNow() = 0;
  /// Writes; a failure is logged as "<name> save failed: " and the error.
  void saveObject(const QJsonObject& object);

 private:
  JsonFile file_;
  const char* name_;
  int holds_ = 0;
  bool isUnsaved_ = false;
};

/// One settings record in one JSON file: loaded once, with a default for every key that is missing or unreadable, and
/// saved at each real change. Main thread only.
///
/// Record needs `operator==`, `void read(JsonReader&)`, `void write(QJsonObject&) const` and a constant `kStoreName`,
/// the name in the log. Keys that the record does not know are written back untouched.
template <class Record>
class Store : public StoreBase {
 public:
  explicit Store(QString path) : StoreBase(std::move(path), Record::kStoreName) { record_ = load(); }

  const Record& value() const { return record_; }

  /// Applies `change` to the record; when that really changed it, saves at once and emits `changed()`.
  template <class Change>
  void update(Change change) {
    Record next = record_;
    std::forward<Change>(change)(next);
    if (next == record_) return;
    record_ = std::move(next);
    save();
    Q_EMIT changed();
  }

  /// Takes over what another process has written since.
  void reload() {
    Record next = load();
    if (next == record_) return;
    record_ = std::move(next);
    Q_EMIT changed();
  }

 private:
  Record load() {
    JsonReader reader(loadObject());
    Record record;
    record.read(reader);
    foreign_ = reader.unknown();
    if (reader.hasMisfits()) keepBeforeOverwriting();
    return record;
  }
  void saveNow() override {
    QJsonObject object = foreign_;
    record_.write(object);
    saveObject(object);
  }

  Record record_;
  QJsonObject foreign_;
};
