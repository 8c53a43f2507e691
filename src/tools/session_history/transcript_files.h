#pragma once

#include <string>
#include <vector>

#include "platform/folder_listing.h"

/// A transcript that may hold a session.
struct TranscriptFile {
  /// Bytes of the file system.
  std::string path;
  FileTime modified;

  /// The name without folder and extension.
  std::string stem() const;
  /// The name of the folder it lies in.
  std::string folderName() const;
};

/// Files below this size hold no usable conversation, in bytes.
inline constexpr std::int64_t kSmallestTranscript = 400;

/// Claude Code's transcripts below `home`, sub-agents' left out; newest first, equal dates by path.
std::vector<TranscriptFile> claudeCandidates(const std::string& home);
/// The same for Codex.
std::vector<TranscriptFile> codexCandidates(const std::string& home);
