#pragma once

#include <QByteArray>

/// Knows the one credential of the service and compares in constant time. Without a credential nothing passes.
class BearerCheck {
 public:
  explicit BearerCheck(const QByteArray& credential);

  /// `authorization`: the header's value.
  bool passes(const QByteArray& authorization) const;

  /// 32 random bytes of the system's, as text.
  static QByteArray makeCredential();

 private:
  bool isSet_;
  QByteArray digest_;
};
