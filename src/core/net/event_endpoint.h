#pragma once

#include <QByteArray>
#include <QUrl>

#include <optional>

#include "core/settings/folders.h"

/// Where usage events go, and with what credential.
struct EventEndpoint {
  QUrl url;
  /// Empty: none.
  QByteArray bearer;

  /// The service in "services.json" ({"api": base URL, "token": text}), else the host this binary was built with, else
  /// none. A base URL must be https; http is for loopback addresses only.
  static std::optional<EventEndpoint> current(const Folders& folders);
};
