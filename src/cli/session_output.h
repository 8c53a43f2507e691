#pragma once

#include <QJsonObject>

#include "tools/session_history/vibe_session.h"

QJsonObject toJson(const VibeSession& session);
/// Seconds since 1970 with their fraction.
double secondsSince1970(FileTime time);
/// "2 h ago", padded to a column.
QString agoColumn(FileTime time);
/// The agent that --agent names; none for another name.
std::optional<SessionAgent> sessionAgent(const QString& rawValue);
