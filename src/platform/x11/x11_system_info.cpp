#include "platform/x11/x11_system_info.h"

#include <QSysInfo>

#include "platform/x11/xsettings.h"

using namespace Qt::StringLiterals;

QString X11SystemInfo::osVersion() const { return QSysInfo::prettyProductName(); }
QString X11SystemInfo::thisComputer() const { return u"this computer"_s; }
QString X11SystemInfo::systemName() const { return u"Linux"_s; }
QString X11SystemInfo::fileManager() const { return u"your file manager"_s; }
QString X11SystemInfo::systemSettings() const { return u"Settings"_s; }

bool X11SystemInfo::isMotionReduced() const {
  const xcb_window_t manager = selectionOwner(session_, internAtom(session_, "_XSETTINGS_S0"));
  if (manager == XCB_WINDOW_NONE) return false;
  const auto settings = windowProperty(session_, manager, internAtom(session_, "_XSETTINGS_SETTINGS"));
  return integerSetting(settings, "Gtk/EnableAnimations") == 0;
}

QString X11SystemInfo::shortcutOwnerHint() const {
  const auto check = windowProperty(session_, session_.root, internAtom(session_, "_NET_SUPPORTING_WM_CHECK"));
  if (check.size() != sizeof(xcb_window_t)) return {};
  const auto window = *reinterpret_cast<const xcb_window_t*>(check.constData());
  return QString::fromUtf8(windowProperty(session_, window, internAtom(session_, "_NET_WM_NAME")));
}
