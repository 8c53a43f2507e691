#pragma once

#include <curl/curl.h>

#include <QList>
#include <QUrl>

#include <memory>
#include <mutex>

#include "service/ai/provider.h"

/// libcurl itself: one for the program, made before any thread of its.
class HttpLibrary {
 public:
  HttpLibrary() { curl_global_init(CURL_GLOBAL_DEFAULT); }
  ~HttpLibrary() { curl_global_cleanup(); }
  HttpLibrary(const HttpLibrary&) = delete;
  HttpLibrary& operator=(const HttpLibrary&) = delete;
};

struct HttpCall {
  QUrl url;
  /// "Name: value".
  QList<QByteArray> headers;
  /// Empty: GET.
  QByteArray body = {};
  /// Of the answer, in bytes.
  qsizetype longest = 4'000'000;
  /// Gets an event stream as it comes, in place of the answer's body; false ends the call. Empty: nobody wants it.
  std::function<bool(QByteArrayView)> onEvents = {};
};

struct HttpAnswer {
  int status = 0;
  QByteArray body;
  /// It came by `onEvents`.
  bool isStream = false;
  /// `onEvents` wanted no more of it.
  bool isBroken = false;

  bool isSuccess() const { return status >= 200 && status < 300; }
};

/// Calls a provider over HTTP: blocking, within the deadline, without following redirects, and over the connection of
/// an earlier call where that is still open. Several threads at a time.
class HttpCaller {
 public:
  Answered<HttpAnswer> send(const HttpCall& call, const AICall& context);

 private:
  struct End {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
  };
  using Handle = std::unique_ptr<CURL, End>;

  Handle take();
  void giveBack(Handle handle);

  std::mutex mutex_;
  std::vector<Handle> idle_;
};
