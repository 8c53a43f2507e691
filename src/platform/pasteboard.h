#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

#include "base/job.h"

/// What other programs put on the pasteboard, as far as anything here asks for it.
enum class PasteboardFormat {
  png,
  jpeg,
  tiff,
  webp,
  gif,
  bmp,
  /// A line a file, each a URL ("text/uri-list").
  fileURLs,
};

struct PasteboardData {
  PasteboardFormat format = PasteboardFormat::png;
  QByteArray bytes;
};

/// The general pasteboard (the clipboard). As it stands, of a system without one. Main thread only.
class Pasteboard {
 public:
  using Read = std::function<void(std::optional<PasteboardData>)>;

  /// More than that is not taken from another program.
  static constexpr qint64 kLargestData = 256'000'000;

  virtual ~Pasteboard() = default;

  /// Replaces what it holds by plain text.
  virtual void writeText([[maybe_unused]] const QString& text) {}
  /// Answers, later, with the first of `formats` that it holds: nothing when there is none, or when its owner does not
  /// hand it over. A slow owner delays the answer by half a minute at most, and nothing else.
  virtual void read([[maybe_unused]] const std::vector<PasteboardFormat>& formats, const JobRef& job, Read answer) {
    job.later([answer = std::move(answer)] { answer(std::nullopt); });
  }
};
