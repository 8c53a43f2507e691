#include "core/ui/launcher/tool_launcher_panel.h"

#include <utility>

#include "core/ui/launcher/tool_launcher_controller.h"
#include "core/ui/launcher/tool_launcher_view.h"
#include "core/ui/theme.h"
#include "platform/system_info.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kFadeMilliseconds = 110;

}  // namespace

ToolLauncherPanel::ToolLauncherPanel(ToolLauncherController& controller, Services services)
    : services_(services),
      panel_(services.native, QSize(1, 1)),
      view_(new ToolLauncherView(controller, services.system)),
      position_(services.defaults, "launcher"_L1),
      fade_(&panel_, "windowOpacity") {
  fade_.setDuration(kFadeMilliseconds);
  panel_.setWindowTitle(u"Vantle Launcher"_s);
  panel_.setContent(view_);
  panel_.setMovable(true);
  panel_.setKeyHandler([&controller](const KeyPress& press) { return controller.handleKey(press); });
  fitToView();
  connect(view_, &ToolLauncherView::wantedSizeChanged, this, &ToolLauncherPanel::fitToView);
  connect(&panel_, &PalettePanel::moved, this, [this](QPoint origin) { position_.remember(origin); });
  connect(&panel_, &PalettePanel::resignedKey, &controller, [&controller] { controller.dismiss(); });
  connect(&fade_, &QPropertyAnimation::finished, this, &ToolLauncherPanel::finishLeaving);
}

void ToolLauncherPanel::present() {
  fade_.stop();
  hidden_ = nullptr;
  if (!panel_.isVisible()) place();
  if (canFade() && !panel_.isVisible())
    fade(0, 1);
  else
    panel_.setWindowOpacity(1);
  panel_.present();
}

void ToolLauncherPanel::leave(bool animated, std::function<void()> hidden) {
  fade_.stop();
  hidden_ = std::move(hidden);
  if (!animated || !canFade()) return finishLeaving();
  // What is typed during the fade is meant for the user's application already.
  services_.native.stopWatching(*panel_.windowHandle());
  services_.native.releaseKeyboard(*panel_.windowHandle());
  fade(panel_.windowOpacity(), 0);
}

void ToolLauncherPanel::finishLeaving() {
  if (!hidden_) return;
  panel_.dismiss();
  std::exchange(hidden_, nullptr)();
}

bool ToolLauncherPanel::canFade() const {
  return services_.native.isTranslucencyAvailable() && !services_.system.isMotionReduced();
}

void ToolLauncherPanel::fade(qreal from, qreal to) {
  panel_.setWindowOpacity(from);
  fade_.setStartValue(from);
  fade_.setEndValue(to);
  fade_.start();
}

void ToolLauncherPanel::place() {
  constexpr int kMargin = Theme::kPanelMargin;
  const QRect card = QRect(QPoint(), panel_.size()).adjusted(kMargin, kMargin, -kMargin, -kMargin);
  if (const auto origin = position_.origin(card, screenGeometries()))
    panel_.move(*origin);
  else
    panel_.positionOnActiveScreen();
}

void ToolLauncherPanel::fitToView() {
  constexpr int kMargins = 2 * Theme::kPanelMargin;
  panel_.resize(view_->wantedSize() + QSize(kMargins, kMargins));
}
