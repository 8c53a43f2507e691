#pragma once

#include "platform/pasteboard.h"

/// The system's own, which bounds how long an owner may take.
class MacPasteboard final : public Pasteboard {
 public:
  void writeText(const QString& text) override;
  void writeImage(const QByteArray& png) override;
  std::int64_t changeCount() const override;
  void readText(const JobRef& job, ReadText answer) override;
  void keep(const JobRef& job, Kept answer) override;
  void restore(const PasteboardContents& contents) override;
  void read(const std::vector<PasteboardFormat>& formats, const JobRef& job, Read answer) override;
};
