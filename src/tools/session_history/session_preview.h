#pragma once

#include <QString>

#include <stop_token>

#include "tools/session_history/vibe_session.h"

/// The most characters of a prompt that a preview shows.
inline constexpr int kPreviewedPrompt = 600;

/// What the user asked at the two ends of a conversation; empty where nothing is found in the parts that are read.
struct SessionPreview {
  QString firstPrompt;
  QString lastPrompt;

  bool operator==(const SessionPreview&) const = default;
};

/// Reads the transcript's two ends, 256 KiB of each at most. Blocking: for a background thread.
SessionPreview readPreview(const VibeSession& session);
