#pragma once

#include <QDBusArgument>
#include <QList>
#include <QVariantMap>

/// A combination as the portal knows it: a name that stays the same from run to run, and what is to be known about it.
struct PortalShortcut {
  QString id;
  QVariantMap properties;
};
using PortalShortcuts = QList<PortalShortcut>;

QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut);
const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut);
Q_DECLARE_METATYPE(PortalShortcut)
