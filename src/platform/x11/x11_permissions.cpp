#include "platform/x11/x11_permissions.h"

#include <xcb/xtest.h>

#include "platform/portal/portal.h"
#include "platform/x11/xcb_reply.h"

using namespace Qt::StringLiterals;

namespace {

const QString kScreenshot = u"Screenshot"_s;
const QString kTyping = u"RemoteDesktop"_s;

PermissionState stateOf(bool works) { return works ? PermissionState::granted : PermissionState::notGranted; }

}  // namespace

PermissionState X11Permissions::state(Permission permission) const {
  if (permission == Permission::accessibility) return stateOf(canType());
  if (!isWaylandSession()) return stateOf(canRead());
  return isOffered(kScreenshot) ? PermissionState::granted : PermissionState::unavailable;
}

QString X11Permissions::remedy(Permission permission) const {
  if (permission == Permission::accessibility) {
    if (!canType())
      return u"The X server runs without its XTEST extension: switch that on (over SSH: “ssh -Y”) and log in again."_s;
    if (!isWaylandSession()) return {};
    if (isOffered(kTyping))
      return u"Under Wayland a selection can be read only in programs that run through XWayland. Into others Vantle "
             u"types by the desktop's portal, which asks you the first time."_s;
    return u"Under Wayland only programs that run through XWayland can be reached: log in with an X11 session to reach "
           u"all of them."_s;
  }
  if (state(permission) == PermissionState::granted) return {};
  if (isWaylandSession())
    return u"Wayland gives the screen only to the desktop portal, and none here takes screenshots: install "
           u"xdg-desktop-portal with your desktop's part of it, or log in with an X11 session."_s;
  return u"The X server refuses GetImage on the root window: trust this program (over SSH: “ssh -Y”) and log in again."_s;
}

QString X11Permissions::shortcutsRemedy() const {
  if (!isWaylandSession() || (haveShortcuts_ && haveShortcuts_())) return {};
  return u"Wayland leaves global shortcuts to the desktop: “vantle doctor” prints what to paste there."_s;
}

void X11Permissions::settle() {
  if (!portal_) return;
  for (const QString& interface : {kScreenshot, kTyping}) portal_->offers(interface);
}

bool X11Permissions::isOffered(const QString& interface) const {
  return portal_ && portal_->offer(interface).value_or(false);
}

bool X11Permissions::canType() const {
  const auto* extension = xcb_get_extension_data(session_.connection, &xcb_test_id);
  return extension != nullptr && extension->present;
}

bool X11Permissions::canRead() const {
  constexpr std::uint32_t kAllPlanes = 0xFFFFFFFF;
  const auto cookie =
      xcb_get_image(session_.connection, XCB_IMAGE_FORMAT_Z_PIXMAP, session_.root, 0, 0, 1, 1, kAllPlanes);
  xcb_generic_error_t* refusal = nullptr;
  const XcbReply<xcb_get_image_reply_t> pixel(xcb_get_image_reply(session_.connection, cookie, &refusal));
  const XcbReply<xcb_generic_error_t> owned(refusal);
  return pixel != nullptr;
}
