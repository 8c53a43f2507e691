#pragma once

#include <functional>
#include <memory>

#include "platform/permissions.h"
#include "platform/x11/x11_session.h"

class Portal;

/// X11 has no permissions: whoever is on the display may type, if the server can synthesize keys at all, and may look.
/// Inside a Wayland session both are the portal's, typing but for programs that run through XWayland.
class X11Permissions final : public Permissions {
 public:
  /// Without a portal under Wayland nobody may look.
  explicit X11Permissions(const X11Session& session, std::shared_ptr<Portal> portal = {},
                          std::function<bool()> haveShortcuts = {})
      : session_(session), portal_(std::move(portal)), haveShortcuts_(std::move(haveShortcuts)) {}

  PermissionState state(Permission permission) const override;
  QString remedy(Permission permission) const override;
  QString shortcutsRemedy() const override;
  void settle() override;

 private:
  bool isOffered(const QString& interface) const;
  bool canType() const;
  bool canRead() const;

  X11Session session_;
  std::shared_ptr<Portal> portal_;
  /// Whether the desktop has taken them.
  std::function<bool()> haveShortcuts_;
};
