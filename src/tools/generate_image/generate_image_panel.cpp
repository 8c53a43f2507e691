#include "tools/generate_image/generate_image_panel.h"

#include "tools/generate_image/generate_image_panel_controller.h"
#include "tools/generate_image/generate_image_view.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kCard(900, 592);

}  // namespace

GenerateImagePanel::GenerateImagePanel(PanelWindow& native, QSettings& defaults,
                                       GenerateImagePanelController& controller)
    : GenerateImagePanel(native, defaults, controller, new GenerateImageView(controller)) {}

GenerateImagePanel::GenerateImagePanel(PanelWindow& native, QSettings& defaults,
                                       GenerateImagePanelController& controller, GenerateImageView* view)
    : StandingPanel(
          native, kCard, view, PanelPosition(defaults, "generateImage"_L1),
          [view, &controller](const KeyPress& key) { return controller.handleKey(key, view->hasSelection()); }) {}
