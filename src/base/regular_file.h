#pragma once

#include <QFile>
#include <QString>

#include <expected>
#include <memory>

#include "base/file_error.h"

/// Opens a file for reading only if it is a regular one: a link in its place is not followed, and a pipe not waited
/// for.
std::expected<std::unique_ptr<QFile>, FileError> openRegularFile(const QString& path);
