#pragma once

#include <QRandomGenerator>
#include <QString>

/// How the portal is reached.
namespace portal_names {

inline const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
inline const QString kObject = QStringLiteral("/org/freedesktop/portal/desktop");
inline const QString kPrefix = QStringLiteral("org.freedesktop.portal.");
inline const QString kSession = QStringLiteral("org.freedesktop.portal.Session");
inline const QString kRequest = QStringLiteral("org.freedesktop.portal.Request");

/// Names the object that stands for a question or a session, which no other program is to guess.
inline QString newToken() { return QStringLiteral("vantle%1").arg(QRandomGenerator::global()->generate64(), 0, 16); }

}  // namespace portal_names
