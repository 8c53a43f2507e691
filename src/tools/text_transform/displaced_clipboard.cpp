#include "tools/text_transform/displaced_clipboard.h"

#include <utility>

#include "base/clock.h"

using namespace std::chrono_literals;

namespace {

/// A program that is busy for longer has other troubles.
constexpr auto kLatest = 10s;
constexpr auto kBetweenLooks = 50ms;

}  // namespace

void DisplacedClipboard::prepare(const JobRef& job, Ready ready) {
  // A copy that has come since the last look is not the user's.
  if (late_) look();
  looking_.cancel();
  const auto late = std::exchange(late_, std::nullopt);
  const std::int64_t count = services_.pasteboard.changeCount();
  const EarlierClipboard earlier = displaced_.earlier.lock();
  if (earlier && count == displaced_.count) return ready(takeOver(earlier));
  // What is asked for twice may still come once: it counts from the first time on.
  if (late && count == late->before.count) return ready({late->before.earlier, count});
  if (!earlier) return keep(job, ready);
  // A clipboard manager may have taken the copy over.
  services_.pasteboard.readText(job, [this, job, earlier, ready](const std::optional<QString>& text) {
    if (isDisplaced(earlier) && text == displaced_.text) return ready(takeOver(earlier));
    keep(job, ready);
  });
}

void DisplacedClipboard::keep(const JobRef& job, const Ready& ready) {
  services_.pasteboard.keep(job, [this, ready](PasteboardContents contents) {
    displaced_ = {};
    ready({std::make_shared<const PasteboardContents>(std::move(contents)), services_.pasteboard.changeCount()});
  });
}

/// Under a new name: who knows it by the old one has nothing to put back any more.
DisplacedClipboard::Before DisplacedClipboard::takeOver(const EarlierClipboard& earlier) {
  const auto renamed = std::make_shared<const PasteboardContents>(*earlier);
  displaced_.earlier = renamed;
  displaced_.count = services_.pasteboard.changeCount();
  return {renamed, displaced_.count, true};
}

void DisplacedClipboard::displace(const Selection& selection) {
  displaced_ = {selection.previousClipboard, selection.text, selection.copyCount};
}

void DisplacedClipboard::restore(const Selection& selection) {
  const EarlierClipboard earlier = selection.previousClipboard;
  if (!isDisplaced(earlier)) return;
  if (services_.pasteboard.changeCount() == displaced_.count) return putBack(earlier);
  // Clipboard managers take over what others copy, and it is still the copy; anything else is the user's.
  restoring_ = Job::start();
  services_.pasteboard.readText(restoring_, [this, earlier](const std::optional<QString>& text) {
    if (!isDisplaced(earlier)) return;
    if (text == displaced_.text) return putBack(earlier);
    displaced_ = {};
  });
}

void DisplacedClipboard::putBack(const EarlierClipboard& earlier) {
  displaced_ = {};
  services_.pasteboard.restore(*earlier);
  // That was no copy.
  if (late_) late_->before.count = services_.pasteboard.changeCount();
}

void DisplacedClipboard::undoLateCopy(Awaited awaited) {
  if (!awaited.input) return;
  late_ = std::move(awaited);
  lateEnd_ = services_.clock.monotonic() + kLatest;
  looking_ = Job::start();
  lookLater();
}

void DisplacedClipboard::lookLater() {
  services_.clock.after(kBetweenLooks, looking_, [this] { look(); });
}

void DisplacedClipboard::look() {
  const std::int64_t count = services_.pasteboard.changeCount();
  const auto touch = late_->input->firstTouch();
  const std::int64_t last = late_->before.count;
  // Some programs copy twice.
  bool isCopy = true;
  for (std::int64_t change = last + 1; change <= count && isCopy; ++change)
    isCopy = services_.pasteboard.isChangeBy(late_->program, change, touch);
  if (count > last && isCopy) putBack(late_->before.earlier);
  if (isCopy && services_.clock.monotonic() < lateEnd_) return lookLater();
  late_.reset();
}
