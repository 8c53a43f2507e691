#pragma once

#include <cstddef>
#include <cstdint>

#include "tools/session_history/transcript_parsers.h"

using TranscriptParser = std::optional<VibeSession> (*)(const TranscriptFile&, ParserScratch&);

/// Writes a fuzzer's input as a transcript, reads it in every way the program does, and ends the process where a rule
/// is broken. The first three bytes say where the file is stretched beyond what is read of it, and with what: the edges
/// of what is read would never be met otherwise.
void readAsTranscript(const std::uint8_t* data, std::size_t size, SessionAgent agent, TranscriptParser parse);
