#include "platform/x11/x11_permissions.h"

#include <xcb/xtest.h>

bool X11Permissions::isAccessibilityTrusted() const {
  const auto* extension = xcb_get_extension_data(session_.connection, &xcb_test_id);
  return extension != nullptr && extension->present;
}
