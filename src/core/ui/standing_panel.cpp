#include "core/ui/standing_panel.h"

#include "core/ui/theme.h"

namespace {

constexpr QSize kMargins(2 * Theme::kPanelMargin, 2 * Theme::kPanelMargin);

}  // namespace

StandingPanel::StandingPanel(PanelWindow& native, QSize card, PanelPosition position,
                             PalettePanel::KeyHandler handleKey)
    : panel_(native, card + kMargins), position_(position) {
  panel_.setMovable(true);
  panel_.setStaysUp(true);
  panel_.setKeyHandler(std::move(handleKey));
  connect(&panel_, &PalettePanel::moved, this, [this](QPoint origin) { position_.remember(origin); });
}

void StandingPanel::present() {
  if (!panel_.isVisible()) panel_.positionAt(position_);
  panel_.present();
}
