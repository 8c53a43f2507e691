#pragma once

#include <QByteArray>
#include <QString>

/// 32 random bytes of the system's as 43 characters that need no escaping anywhere.
QByteArray makeSecret();

/// What is stored in place of a secret: its SHA-256 in hexadecimal digits.
QString secretDigest(QByteArrayView secret);
