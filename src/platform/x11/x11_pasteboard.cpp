#include "platform/x11/x11_pasteboard.h"

#include "base/background.h"
#include "platform/x11/clipboard_reader.h"

namespace {

/// Owners that never answer hold a thread each until they are given up.
constexpr int kMostReaders = 8;

}  // namespace

X11Pasteboard::X11Pasteboard() { readers_.setMaxThreadCount(kMostReaders); }

void X11Pasteboard::read(const std::vector<PasteboardFormat>& formats, const JobRef& job, Read answer) {
  const auto work = [formats](const std::stop_token& stop) { return ClipboardReader({}, stop).first(formats); };
  runInBackground(job, work, std::move(answer), readers_);
}
