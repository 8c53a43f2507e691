#pragma once

#include <QString>

/// How the portal is reached.
namespace portal_names {

inline const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
inline const QString kObject = QStringLiteral("/org/freedesktop/portal/desktop");
inline const QString kPrefix = QStringLiteral("org.freedesktop.portal.");
inline const QString kSession = QStringLiteral("org.freedesktop.portal.Session");
inline const QString kRequest = QStringLiteral("org.freedesktop.portal.Request");

}  // namespace portal_names
