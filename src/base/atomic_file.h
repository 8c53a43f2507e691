#pragma once

#include <QByteArray>
#include <QString>

#include <expected>

#include "base/file_error.h"

/// Replaces a file whole or not at all, with mode 0600; missing folders are made with mode 0700. On an error, a full
/// disk included, the old file is still there.
std::expected<void, FileError> writeFileAtomically(const QString& path, const QByteArray& bytes);

/// The same for a file among the user's own: an existing one keeps its permissions, a new one has those that the user's
/// programs give, a link to a file stays a link, and the folder must be there.
std::expected<void, FileError> replaceFileAtomically(const QString& path, const QByteArray& bytes);
