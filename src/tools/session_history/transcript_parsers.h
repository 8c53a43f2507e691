#pragma once

#include <optional>

#include "tools/session_history/line_decoder.h"
#include "tools/session_history/transcript_files.h"
#include "tools/session_history/transcript_reader.h"
#include "tools/session_history/vibe_session.h"

/// What parsing needs over and over; one for each thread.
struct ParserScratch {
  TranscriptReader reader;
  LineDecoder decoder;
};

/// The session in a transcript; none when it cannot be read or lacks id, folder or title.
std::optional<VibeSession> parseClaude(const TranscriptFile& file, ParserScratch& scratch);
std::optional<VibeSession> parseCodex(const TranscriptFile& file, ParserScratch& scratch);
