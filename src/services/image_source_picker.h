#pragma once

#include "capture/region_picker.h"
#include "services/clipboard_images.h"
#include "services/image_source.h"

/// The image that a tool was started for, from where the user has set, with what the user is told when there is none.
/// Main thread only.
class ImageSourcePicker {
 public:
  struct Services {
    Pasteboard& pasteboard;
    RegionPicker regions;
    ToastPresenter& toasts;
    /// The tool's shortcut as it is displayed; empty without one.
    std::function<QString()> shortcut;
  };
  /// Whose image it is.
  struct Owner {
    QString name;
    QString icon;
    /// The icon of the toast without the permission.
    ToastContent refusal;
  };
  using Picked = std::function<void(std::optional<ClipboardImage>)>;

  ImageSourcePicker(Services services, Owner owner);

  /// Answers once, never after the end of `job`: with the image, or with nothing when the user cancelled, or was told
  /// why not.
  void pick(ImageSource source, const JobRef& job, Picked picked);

 private:
  void pickRegion(const JobRef& job, Picked picked);
  void showNoImage();

  Services services_;
  Owner owner_;
};
