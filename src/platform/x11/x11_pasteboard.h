#pragma once

#include <QThreadPool>

#include "platform/pasteboard.h"
#include "platform/x11/clipboard_owner.h"
#include "platform/x11/clipboard_watch.h"

/// The clipboard, read, offered and watched on connections and threads of our own. Qt would make the user's whole
/// session with this program wait for an owner that does not answer.
class X11Pasteboard final : public Pasteboard {
 public:
  X11Pasteboard();
  /// Waits for reads that are under way; their jobs have ended, so that is short.
  ~X11Pasteboard() override = default;

  void writeText(const QString& text) override;
  void writeImage(const QByteArray& png) override;
  std::int64_t changeCount() const override;
  bool isChangeBy(KeyTarget program, std::int64_t change, std::optional<InputTime> touch) const override;
  void readText(const JobRef& job, ReadText answer) override;
  void keep(const JobRef& job, Kept answer) override;
  void restore(const PasteboardContents& contents) override;
  void read(const std::vector<PasteboardFormat>& formats, const JobRef& job, Read answer) override;

 private:
  void offer(PasteboardContents contents);

  // Both from their first use on.
  std::unique_ptr<ClipboardOwner> owner_;
  mutable std::unique_ptr<ClipboardWatch> watch_;
  QThreadPool readers_;
};
