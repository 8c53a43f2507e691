#pragma once

#include "platform/pasteboard.h"
#include "services/clipboard_image.h"

/// The image on the pasteboard, for the tools that send one. Main thread only.
class ClipboardImages {
 public:
  using Read = std::function<void(std::optional<ClipboardImage>)>;

  explicit ClipboardImages(Pasteboard& pasteboard) : pasteboard_(pasteboard) {}

  /// Answers, later, with a PNG: the one that was copied, as it is; else a copied picture of another kind, or the first
  /// copied file whose name says that it is an image, encoded anew. Nothing when there is none that can be decoded.
  void read(const JobRef& job, Read answer);

 private:
  void readFirst(std::vector<PasteboardFormat> formats, const JobRef& job, Read answer);
  void take(PasteboardData data, std::vector<PasteboardFormat> next, const JobRef& job, const Read& answer);

  Pasteboard& pasteboard_;
};
