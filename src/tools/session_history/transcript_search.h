#pragma once

#include <QString>

#include <functional>
#include <stop_token>

#include "tools/session_history/vibe_session.h"

/// A conversation in which the text was found.
struct SearchHit {
  VibeSession session;
  /// One line from around the first place.
  QString excerpt;
};

struct SearchRequest {
  /// Compared as searches in lists are: letter case does not count, nor how words are spaced.
  QString text;
  bool includeClaude = true;
  bool includeCodex = true;
  /// The most hits.
  std::size_t limit = SIZE_MAX;
};

/// Looks through the prompts and the answers of all conversations below `home`, whole files, newest first, and calls
/// `found` for each hit as soon as none newer can come, from the calling thread. Blocking. Lines above 16 MB, which
/// hold pasted files, are passed over.
void searchTranscripts(const QString& home, const SearchRequest& request,
                       const std::function<void(const SearchHit&)>& found, const std::stop_token& stop = {});
