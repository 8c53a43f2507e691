#pragma once

#include <QString>

/// Makes the missing part of a folder's path with mode 0700; folders that exist keep theirs. False when it cannot be
/// made.
bool makePrivateFolder(const QString& path);
