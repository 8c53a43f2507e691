#include "tools/feedback/report_panel.h"

#include "core/ui/theme.h"
#include "tools/feedback/report_panel_controller.h"
#include "tools/feedback/report_view.h"

namespace {

constexpr int kMargin = Theme::kPanelMargin;
constexpr QSize kCard(560, 440);

}  // namespace

ReportPanel::ReportPanel(PanelWindow& native, ReportPanelController& controller, ReportView* view,
                         PanelPosition position)
    : panel_(native, kCard + QSize(2 * kMargin, 2 * kMargin)), view_(view), position_(position) {
  panel_.setWindowTitle(view_->windowTitle());
  panel_.setContent(view_);
  panel_.setMovable(true);
  panel_.setStaysUp(true);
  panel_.setKeyHandler([&controller](const KeyPress& key) { return controller.handleKey(key); });
  connect(&panel_, &PalettePanel::moved, this, [this](QPoint origin) { position_.remember(origin); });
  connect(&panel_, &PalettePanel::becameKey, view_, [this] { view_->setHasKeyboard(true); });
  connect(&panel_, &PalettePanel::resignedKey, view_, [this] { view_->setHasKeyboard(false); });
  connect(view_, &ReportView::dropped, &panel_, &PalettePanel::takeKeyboard);
}

void ReportPanel::present() {
  if (!panel_.isVisible()) panel_.positionAt(position_);
  panel_.present();
}

void ReportPanel::warmUp() {
  panel_.winId();
  panel_.grab();
}
