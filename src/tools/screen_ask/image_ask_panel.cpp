#include "tools/screen_ask/image_ask_panel.h"

#include "tools/screen_ask/image_ask_panel_controller.h"
#include "tools/screen_ask/image_ask_view.h"

ImageAskPanel::ImageAskPanel(PanelWindow& native, ImageAskPanelController& controller, const OpenLink& openLink)
    : ImageAskPanel(native, controller, new ImageAskView(controller), openLink) {}

ImageAskPanel::ImageAskPanel(PanelWindow& native, ImageAskPanelController& controller, ImageAskView* view,
                             const OpenLink& openLink)
    : AskPanel(native, controller, view) {
  panel().setStaysUp(true);
  panel().setMovable(true);
  connect(&panel(), &PalettePanel::becameKey, view, [view] { view->setHasKeyboard(true); });
  connect(&panel(), &PalettePanel::resignedKey, view, [view] { view->setHasKeyboard(false); });
  connect(view, &AskView::linkChosen, this, openLink);
}
