#include "services/image_source_picker.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kNoImageToast = 4s;

}  // namespace

ImageSourcePicker::ImageSourcePicker(Services services, Owner owner)
    : services_(std::move(services)), owner_(std::move(owner)) {}

void ImageSourcePicker::pick(ImageSource source, const JobRef& job, Picked picked) {
  if (source == ImageSource::liveSelection) return pickRegion(job, std::move(picked));
  const auto images = std::make_shared<ClipboardImages>(services_.pasteboard);
  images->read(job, [this, images, picked = std::move(picked)](const auto& image) {
    if (!image) showNoImage();
    picked(image);
  });
}

void ImageSourcePicker::pickRegion(const JobRef& job, Picked picked) {
  if (!services_.regions.isAllowed(owner_.refusal)) return picked(std::nullopt);
  services_.regions.pick(owner_.name, owner_.icon, job, [picked = std::move(picked)](const auto& png) {
    picked(png ? std::optional(ClipboardImage{*png, u"selection.png"_s, u"image/png"_s}) : std::nullopt);
  });
}

void ImageSourcePicker::showNoImage() {
  const QString shortcut = services_.shortcut();
  const QString again = shortcut.isEmpty() ? u"start %1 again"_s.arg(owner_.name) : u"press "_s + shortcut;
  services_.toasts.show({.icon = u"photo.badge.exclamationmark"_s,
                         .iconColor = QColorConstants::White,
                         .title = u"No image on the clipboard"_s,
                         .detail = u"Copy an image first, then "_s + again},
                        kNoImageToast);
}
