#pragma once

#include <QByteArray>
#include <QString>

#include <expected>

#include "base/file_error.h"

/// Replaces a file whole or not at all, with mode 0600; missing folders are made with mode 0700. On an error, a full
/// disk included, the old file is still there.
std::expected<void, FileError> writeFileAtomically(const QString& path, const QByteArray& bytes);
