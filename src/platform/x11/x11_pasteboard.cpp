#include "platform/x11/x11_pasteboard.h"

#include "base/background.h"
#include "platform/x11/clipboard_reader.h"
#include "platform/x11/window_client.h"
#include "platform/x11/x11_key_targets.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Owners that never answer hold a thread each until they are given up.
constexpr int kMostReaders = 8;
/// The user is waiting. Programs that offer a copied picture in a dozen kinds make each when it is asked for, the one
/// that they like best first.
constexpr ClipboardReader::Limits kKeepLimits{.offers = 500ms, .silence = 1000ms, .whole = 1500ms};
constexpr ClipboardReader::Limits kTextLimits{.offers = 500ms, .silence = 2000ms, .whole = 3000ms};

}  // namespace

X11Pasteboard::X11Pasteboard() { readers_.setMaxThreadCount(kMostReaders); }

void X11Pasteboard::writeText(const QString& text) {
  const QByteArray bytes = text.toUtf8();
  offer({{{u"UTF8_STRING"_s, bytes},
          {u"text/plain;charset=utf-8"_s, bytes},
          {u"text/plain"_s, bytes},
          {u"TEXT"_s, bytes, 0, u"UTF8_STRING"_s},
          {u"STRING"_s, text.toLatin1()}}});
}

void X11Pasteboard::writeImage(const QByteArray& png) { offer({{{u"image/png"_s, png}}}); }

void X11Pasteboard::restore(const PasteboardContents& contents) { offer(contents); }

void X11Pasteboard::offer(PasteboardContents contents) {
  if (!owner_) owner_ = std::make_unique<ClipboardOwner>();
  owner_->offer(std::move(contents));
}

std::int64_t X11Pasteboard::changeCount() const {
  if (!watch_) watch_ = std::make_unique<ClipboardWatch>();
  return watch_->count();
}

bool X11Pasteboard::isChangeBy(KeyTarget program, std::int64_t change, std::optional<InputTime> touch) const {
  const auto known = watch_ ? watch_->change(change) : std::nullopt;
  if (!known || !isSameClient(currentX11Session(), known->owner, windowOf(program))) return false;
  // The server's clock runs over.
  return !touch || static_cast<std::int32_t>(known->time - static_cast<xcb_timestamp_t>(*touch)) < 0;
}

void X11Pasteboard::readText(const JobRef& job, ReadText answer) {
  const auto work = [](const std::stop_token& stop) { return ClipboardReader(kTextLimits, stop).text(); };
  runInBackground(job, work, std::move(answer), readers_);
}

void X11Pasteboard::keep(const JobRef& job, Kept answer) {
  const auto work = [](const std::stop_token& stop) { return ClipboardReader(kKeepLimits, stop).everything(); };
  runInBackground(job, work, std::move(answer), readers_);
}

void X11Pasteboard::read(const std::vector<PasteboardFormat>& formats, const JobRef& job, Read answer) {
  const auto work = [formats](const std::stop_token& stop) { return ClipboardReader({}, stop).first(formats); };
  runInBackground(job, work, std::move(answer), readers_);
}
