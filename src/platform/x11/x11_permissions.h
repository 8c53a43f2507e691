#pragma once

#include <functional>
#include <memory>

#include "platform/permissions.h"
#include "platform/x11/x11_session.h"

class Portal;

/// X11 has no permissions: whoever is on the display may type, if the server can synthesize keys at all, and may look.
/// Inside a Wayland session typing ends at the programs that run through XWayland, and looking is the portal's.
class X11Permissions final : public Permissions {
 public:
  /// Without a portal under Wayland nobody may look.
  explicit X11Permissions(const X11Session& session, std::shared_ptr<Portal> portal = {},
                          std::function<bool()> haveShortcuts = {})
      : session_(session), portal_(std::move(portal)), haveShortcuts_(std::move(haveShortcuts)) {}

  PermissionState state(Permission permission) const override;
  QString remedy(Permission permission) const override;
  QString shortcutsRemedy() const override;

 private:
  bool canType() const;
  bool canRead() const;

  X11Session session_;
  std::shared_ptr<Portal> portal_;
  /// Whether the desktop has taken them.
  std::function<bool()> haveShortcuts_;
};
