#include "platform/x11/x11_system_info.h"

#include <QSysInfo>

#include "platform/x11/window_manager.h"
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

QString X11SystemInfo::shortcutOwnerHint() const { return QString::fromUtf8(windowManagerName(session_)); }

QString X11SystemInfo::desktops() const {
  const QString names = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
  if (!names.isEmpty()) return names;
  // Compositors started by hand do not always say who they are, but where they listen.
  if (qEnvironmentVariableIsSet("SWAYSOCK")) return u"sway"_s;
  return qEnvironmentVariableIsSet("HYPRLAND_INSTANCE_SIGNATURE") ? u"Hyprland"_s : QString();
}
