#include "platform/mac/mac_api.h"
#include "platform/mac/mac_backends.h"

using namespace Qt::StringLiterals;

namespace {

class MacPermissions final : public Permissions {
 public:
  PermissionState state(Permission permission) const override {
    const bool granted =
        permission == Permission::accessibility ? mac::isAccessibilityTrusted() : mac::isScreenCaptureAllowed();
    return granted ? PermissionState::granted : PermissionState::notGranted;
  }
  QString remedy(Permission permission) const override {
    if (state(permission) == PermissionState::granted) return {};
    if (permission == Permission::accessibility)
      return u"Enable Vantle in System Settings → Privacy & Security → Accessibility."_s;
    return u"Enable Vantle in System Settings → Privacy & Security → Screen Recording, then open Vantle again."_s;
  }
  void request(Permission permission) override {
    permission == Permission::accessibility ? mac::promptForAccessibility() : mac::requestScreenCapture();
  }
  bool hasSettingsPage(Permission) const override { return true; }
  void openSettingsPage(Permission permission) override {
    mac::openPrivacyPage(permission == Permission::accessibility ? "Privacy_Accessibility" : "Privacy_ScreenCapture");
  }
};

}  // namespace

std::unique_ptr<Permissions> mac::makePermissions() { return std::make_unique<MacPermissions>(); }
