#include "tools/image_to_url/uplink_tool.h"

#include "base/visible_text.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kFailureToast = 8s;
/// The outcome takes its place long before.
constexpr auto kUploadToast = 120s;
constexpr qsizetype kBytesPerKB = 1024;
/// Of what the service says; a toast shows less.
constexpr qsizetype kShown = 300;

}  // namespace

UplinkTool::UplinkTool(Services services, SettingsViewFactory settingsView)
    : Tool(toolInfo(kUplinkID), std::move(settingsView)), services_(std::move(services)) {}

void UplinkTool::activate() {
  const Activation activation = begin();
  services_.images.pick(services_.settings.value().source, activations_[activation],
                        [this, activation](const auto& image) {
                          if (image) return upload(*image, activation);
                          activations_.erase(activation);
                        });
}

UplinkTool::Activation UplinkTool::begin() {
  activations_[++lastActivation_] = Job::start();
  return lastActivation_;
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
