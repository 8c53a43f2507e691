#pragma once

#include "platform/qt_pasteboard.h"

/// Written by Qt, read from the system itself, which bounds how long an owner may take.
class MacPasteboard final : public QtPasteboard {
 public:
  void read(const std::vector<PasteboardFormat>& formats, const JobRef& job, Read answer) override;
};
