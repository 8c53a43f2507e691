#pragma once

#include <QByteArray>

/// One request as the endpoints see it, whole.
struct Request {
  QByteArray method;
  QByteArray path;
  QByteArray body;
};

struct Response {
  int status = 200;
  QByteArray body;
  QByteArray contentType = "application/json";

  static Response text(int status, const QByteArray& text) {
    return {status, text + '\n', "text/plain; charset=utf-8"};
  }
};
