#include "tools/session_history/vibe_history_palette_window.h"

#include "core/ui/palette_list.h"
#include "core/ui/palette_view.h"
#include "core/ui/theme.h"
#include "tools/session_history/session_preview_view.h"
#include "tools/session_history/vibe_history_palette_controller.h"
#include "tools/session_history/vibe_history_row_delegate.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kCard(680, 560);
constexpr QSize kPanelSize = kCard + 2 * QSize(Theme::kPanelMargin, Theme::kPanelMargin);

PaletteView* makeView(VibeHistoryPaletteController& controller) {
  auto* view = new PaletteView(controller.model(), new VibeHistoryRowDelegate,
                               {.title = u"Vibe History"_s,
                                .placeholder = u"Type to filter…"_s,
                                .listName = u"Conversations"_s,
                                .hints = {{{u"↩"_s}, u"resumes in your terminal"_s},
                                          {{u"⌘"_s, u"↩"_s}, u"insert + run"_s},
                                          {{u"⌘"_s, u"C"_s}, u"copy"_s},
                                          {{u"esc"_s}, u"close"_s}}});
  // Rows that begin a group are taller.
  view->list().setUniformItemSizes(false);
  auto* preview = new SessionPreviewView;
  view->addBelow(preview);
  QObject::connect(&controller, &VibeHistoryPaletteController::previewChanged, preview,
                   [preview, &controller] { preview->setPreview(controller.preview()); });
  QObject::connect(view, &PaletteView::chosen, view, [&controller](int row) {
    controller.insert(controller.model().filtered().at(static_cast<std::size_t>(row)), false);
  });
  return view;
}

}  // namespace

VibeHistoryPaletteWindow::VibeHistoryPaletteWindow(PanelWindow& native, VibeHistoryPaletteController& controller)
    : PaletteWindow(native, makeView(controller), controller, kPanelSize) {}
