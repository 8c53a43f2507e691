#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "base/job.h"
#include "platform/key_target.h"

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

/// One kind of data on a pasteboard.
struct PasteboardFlavour {
  /// The system's own name for it: "public.html", "text/html".
  QString name;
  QByteArray bytes;
  /// Which of several things on the pasteboard this is; counted on macOS only.
  int item = 0;
  /// X11: what its owner calls the bytes when that is not the name, and how many bits make one unit of them.
  QString type = {};
  int bits = 8;

  bool operator==(const PasteboardFlavour&) const = default;
};

/// Everything that a pasteboard held at one time.
struct PasteboardContents {
  std::vector<PasteboardFlavour> flavours;

  bool operator==(const PasteboardContents&) const = default;
};

/// The general pasteboard (the clipboard). As it stands, of a system without one. Main thread only.
class Pasteboard {
 public:
  using Read = std::function<void(std::optional<PasteboardData>)>;
  using ReadText = std::function<void(std::optional<QString>)>;
  using Kept = std::function<void(PasteboardContents)>;

  /// More than that is not taken from another program.
  static constexpr qint64 kLargestData = 256'000'000;

  virtual ~Pasteboard() = default;

  /// Replaces what it holds by plain text.
  virtual void writeText([[maybe_unused]] const QString& text) {}
  /// Replaces what it holds by an image, a whole PNG.
  virtual void writeImage([[maybe_unused]] const QByteArray& png) {}
  /// Moves whenever any program puts something on it, also when that equals what was there.
  virtual std::int64_t changeCount() const { return 0; }
  /// Whether what moved the count on to `change` certainly was that program, because of something that happened before
  /// `touch` (nothing: at any time). Of the last few changes only; false where nobody can tell.
  virtual bool isChangeBy([[maybe_unused]] KeyTarget program, [[maybe_unused]] std::int64_t change,
                          [[maybe_unused]] std::optional<InputTime> touch) const {
    return false;
  }
  /// Answers, later, with its plain text; nothing when it has none.
  virtual void readText(const JobRef& job, ReadText answer) {
    job.later([answer = std::move(answer)] { answer(std::nullopt); });
  }
  /// Answers, later, with all that it holds, as far as its owner hands it over in time; empty: it is empty.
  virtual void keep(const JobRef& job, Kept answer) {
    job.later([answer = std::move(answer)] { answer({}); });
  }
  /// Puts back what was kept. Empty contents empty it.
  virtual void restore([[maybe_unused]] const PasteboardContents& contents) {}
  /// Answers, later, with the first of `formats` that it holds: nothing when there is none, or when its owner does not
  /// hand it over. A slow owner delays the answer by half a minute at most, and nothing else.
  virtual void read([[maybe_unused]] const std::vector<PasteboardFormat>& formats, const JobRef& job, Read answer) {
    job.later([answer = std::move(answer)] { answer(std::nullopt); });
  }
};
