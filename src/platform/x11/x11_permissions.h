#pragma once

#include "platform/permissions.h"
#include "platform/x11/x11_session.h"

/// X11 has no permissions: whoever is on the display may type, if the server can synthesize keys at all.
class X11Permissions final : public Permissions {
 public:
  explicit X11Permissions(const X11Session& session) : session_(session) {}

  bool isAccessibilityTrusted() const override;
  void promptForAccessibility() override {}

 private:
  X11Session session_;
};
