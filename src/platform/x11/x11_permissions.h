#pragma once

#include "platform/permissions.h"
#include "platform/x11/x11_session.h"

/// X11 has no permissions: whoever is on the display may type, if the server can synthesize keys at all, and may look.
/// Inside a Wayland session both end at the programs that run through XWayland.
class X11Permissions final : public Permissions {
 public:
  explicit X11Permissions(const X11Session& session) : session_(session) {}

  PermissionState state(Permission permission) const override;
  QString remedy(Permission permission) const override;
  QString shortcutsRemedy() const override;

 private:
  bool canType() const;
  bool canRead() const;

  X11Session session_;
};
