#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

#include "service/http/body_stream.h"
#include "service/storage/descriptor.h"

/// Who asks, as far as the credential tells.
struct Caller {
  enum class Kind { nobody, service, person };

  Kind kind = Kind::nobody;
  /// Counters and limits are kept by it; empty: nobody.
  QString owner;
  /// What the log calls it.
  QString name;
  QString plan;
};

/// The head of a request.
struct Request {
  QByteArray method;
  QByteArray path;
  /// By lower-case name; of several with one name the first.
  QHash<QByteArray, QByteArray> headers;
  /// Of the client, as text.
  QByteArray address;
  Caller caller = {};
  /// Asked to stop when the client goes away, or the service ends, while an answer is being made.
  std::stop_token gone = {};

  QByteArray header(const QByteArray& lowerCaseName) const { return headers.value(lowerCaseName); }
  /// Of the body, in bytes, as announced; -1: a body without an announced size; 0: none.
  qint64 bodySize() const;
  /// It says in two ways where its body ends: a proxy before this service may have believed the other one.
  bool isAmbiguous() const { return headers.contains("transfer-encoding") && headers.contains("content-length"); }
};

/// Bytes of a file, sent by the system without passing through this program.
struct FileSlice {
  Descriptor file;
  qint64 offset = 0;
  qint64 size = 0;
};

struct Response {
  int status = 200;
  QByteArray body = {};
  QByteArray contentType = "application/json";
  QList<std::pair<QByteArray, QByteArray>> headers = {};
  /// In place of `body`.
  std::optional<FileSlice> file = {};
  /// In place of `body`.
  std::shared_ptr<BodyStream> stream = {};

  void add(const QByteArray& name, const QByteArray& value) { headers.emplaceBack(name, value); }

  static Response text(int status, const QByteArray& text) {
    return {.status = status, .body = text + '\n', .contentType = "text/plain; charset=utf-8"};
  }
};

/// Called once, on any thread, now or later.
using Reply = std::function<void(Response)>;
