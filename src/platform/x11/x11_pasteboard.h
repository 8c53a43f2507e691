#pragma once

#include <QThreadPool>

#include "platform/qt_pasteboard.h"

/// The clipboard: written by Qt, read on connections and threads of our own. Qt would make the user's whole session
/// with this program wait for an owner that does not answer.
class X11Pasteboard final : public QtPasteboard {
 public:
  X11Pasteboard();
  /// Waits for reads that are under way; their jobs have ended, so that is short.
  ~X11Pasteboard() override = default;

  void read(const std::vector<PasteboardFormat>& formats, const JobRef& job, Read answer) override;

 private:
  QThreadPool readers_;
};
