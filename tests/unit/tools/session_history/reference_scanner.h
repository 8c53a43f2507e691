#pragma once

#include <optional>

#include "tools/session_history/vibe_session.h"

/// The rules of reading a transcript once more, slow and plain: whole files, Qt's JSON. `name` is the path below the
/// agent's folder; the bytes are what the file holds.
namespace reference {

std::optional<VibeSession> claude(const QString& path, const QByteArray& bytes);
std::optional<VibeSession> codex(const QString& path, const QByteArray& bytes);

}  // namespace reference
