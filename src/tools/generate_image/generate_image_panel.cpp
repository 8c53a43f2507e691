#include "tools/generate_image/generate_image_panel.h"

#include "core/ui/theme.h"
#include "tools/generate_image/generate_image_panel_controller.h"
#include "tools/generate_image/generate_image_view.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kMargin = Theme::kPanelMargin;
constexpr QSize kCard(900, 592);

}  // namespace

GenerateImagePanel::GenerateImagePanel(PanelWindow& native, QSettings& defaults,
                                       GenerateImagePanelController& controller)
    : panel_(native, kCard + QSize(2 * kMargin, 2 * kMargin)),
      view_(new GenerateImageView(controller)),
      position_(defaults, "generateImage"_L1) {
  panel_.setWindowTitle(view_->windowTitle());
  panel_.setContent(view_);
  panel_.setMovable(true);
  panel_.setStaysUp(true);
  panel_.setKeyHandler(
      [this, &controller](const KeyPress& key) { return controller.handleKey(key, view_->hasSelection()); });
  connect(&panel_, &PalettePanel::moved, this, [this](QPoint origin) { position_.remember(origin); });
  connect(&panel_, &PalettePanel::becameKey, view_, [this] { view_->setHasKeyboard(true); });
  connect(&panel_, &PalettePanel::resignedKey, view_, [this] { view_->setHasKeyboard(false); });
  connect(view_, &GenerateImageView::dropped, &panel_, &PalettePanel::takeKeyboard);
}

void GenerateImagePanel::present() {
  if (!panel_.isVisible()) place();
  panel_.present();
}

void GenerateImagePanel::warmUp() {
  panel_.winId();
  panel_.grab();
}

void GenerateImagePanel::place() {
  const QRect card = QRect(QPoint(), panel_.size()).adjusted(kMargin, kMargin, -kMargin, -kMargin);
  if (const auto origin = position_.origin(card, screenGeometries()))
    panel_.move(*origin);
  else
    panel_.positionOnActiveScreen();
}
