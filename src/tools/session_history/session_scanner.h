#pragma once

#include <stop_token>
#include <vector>

#include "tools/session_history/vibe_session.h"

/// Finds the conversations that the user has had with terminal agents, by reading their transcripts and never writing
/// there. Stateless and blocking: for a background thread. What cannot be read is left out without a word.
class SessionTraceScanner {
 public:
  /// `home`: the user's home folder, which holds ".claude" and ".codex".
  explicit SessionTraceScanner(QString home) : home_(std::move(home)) {}

  /// At most `limit` sessions, newest first. Each agent is cut at `limit` before they are merged. Ends early, with what
  /// nobody waits for, when a stop is requested.
  std::vector<VibeSession> recentSessions(std::size_t limit, bool includeClaude, bool includeCodex,
                                          const std::stop_token& stop = {}) const;

 private:
  QString home_;
};
