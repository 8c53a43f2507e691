#pragma once

#include <algorithm>

#include "services/clipboard_images.h"

/// Something that was dropped, read for an image like something that was copied.
class DroppedImage final : private Pasteboard {
 public:
  explicit DroppedImage(PasteboardData data) : data_(std::move(data)) {}
  DroppedImage(const DroppedImage&) = delete;
  DroppedImage& operator=(const DroppedImage&) = delete;

  /// As `ClipboardImages::read`; must live until then, or until the end of `job`.
  void readImage(const JobRef& job, ClipboardImages::Read answer) { images_.read(job, std::move(answer)); }

 private:
  void read(const std::vector<PasteboardFormat>& formats, const JobRef& job, Read answer) override {
    const bool isWanted = std::ranges::find(formats, data_.format) != formats.end();
    job.later([this, isWanted, answer = std::move(answer)] { answer(isWanted ? std::optional(data_) : std::nullopt); });
  }

  PasteboardData data_;
  ClipboardImages images_{*this};
};
