#include "tools/image_to_url/uplink_tool.h"

#include "base/visible_text.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kNoImageToast = 4s;
constexpr auto kFailureToast = 8s;
/// The outcome takes its place long before.
constexpr auto kUploadToast = 120s;
constexpr qsizetype kBytesPerKB = 1024;
/// Of what the service says; a toast shows less.
constexpr qsizetype kShown = 300;

}  // namespace

UplinkTool::UplinkTool(Services services, SettingsViewFactory settingsView)
    : Tool(toolInfo(kUplinkID), std::move(settingsView)),
      services_(std::move(services)),
      images_(services_.pasteboard) {}

void UplinkTool::activate() {
  if (services_.settings.value().source == ImageSource::clipboard)
    uploadFromClipboard();
  else
    selectRegion();
}

UplinkTool::Activation UplinkTool::begin() {
  activations_[++lastActivation_] = Job::start();
  return lastActivation_;
}

void UplinkTool::uploadFromClipboard() {
  const Activation activation = begin();
  images_.read(activations_[activation], [this, activation](const auto& image) {
    if (image) return upload(*image, activation);
    activations_.erase(activation);
    showNoImage();
  });
}

void UplinkTool::selectRegion() {
  if (services_.permissions.state(Permission::screenRecording) != PermissionState::granted) return showNoPermission();
  const Activation activation = begin();
  const auto selected = [this, activation](const std::optional<QByteArray>& png) {
    if (png) return upload({*png, u"selection.png"_s, u"image/png"_s}, activation);
    activations_.erase(activation);
  };
  services_.regions.begin(name(), icon(), activations_[activation].bind(selected));
}

void UplinkTool::upload(const ClipboardImage& image) { upload(image, begin()); }

void UplinkTool::upload(const ClipboardImage& image, Activation activation) {
  services_.toasts.show(
      {.icon = u"arrow.up.circle"_s, .title = u"Uploading image… (%1 KB)"_s.arg(image.data.size() / kBytesPerKB)},
      kUploadToast);
  services_.uploader.upload(image, activations_[activation],
                            [this, activation](const auto& link) { finish(activation, link); });
}

void UplinkTool::finish(Activation activation, const std::expected<QUrl, UplinkError>& link) {
  activations_.erase(activation);
  if (!link) {
    services_.toasts.show({.icon = u"exclamationmark.triangle.fill"_s,
                           .title = u"Upload failed"_s,
                           .detail = visibleLine(link.error().description(), kShown)},
                          kFailureToast);
    return;
  }
  const QString text = link->toString(QUrl::FullyEncoded);
  services_.pasteboard.writeText(text);
  services_.toasts.show(
      {.icon = u"checkmark.circle.fill"_s, .title = u"Link copied to clipboard"_s, .detail = text, .completes = true},
      toastDuration(services_.preferences.value()));
}

void UplinkTool::showNoImage() {
  const QString shortcut = services_.shortcut();
  const QString again = shortcut.isEmpty() ? u"start Image to URL again"_s : u"press "_s + shortcut;
  services_.toasts.show({.icon = u"photo.badge.exclamationmark"_s,
                         .iconColor = QColorConstants::White,
                         .title = u"No image on the clipboard"_s,
                         .detail = u"Copy an image first, then "_s + again},
                        kNoImageToast);
}

/// Where the system has no page of settings for it, what to do instead is the system's own sentence.
void UplinkTool::showNoPermission() {
  const bool hasPage = services_.permissions.hasSettingsPage(Permission::screenRecording);
  const QString page = u"Enable Vantle in %1 → Privacy, then relaunch"_s.arg(services_.system.systemSettings());
  services_.toasts.show({.icon = icon(),
                         .title = u"Screen Recording permission needed"_s,
                         .detail = hasPage ? page : services_.permissions.remedy(Permission::screenRecording)},
                        kFailureToast);
  if (hasPage) services_.permissions.openSettingsPage(Permission::screenRecording);
}
