#include "tools/open_project/open_project_window.h"

#include "base/visible_text.h"
#include "core/ui/palette_view.h"
#include "core/ui/search_field.h"
#include "tools/open_project/open_project_controller.h"
#include "tools/open_project/open_project_row_delegate.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kShownName = 60;

std::vector<KeyHint> projectHints() {
  return {{{u"↩"_s}, u"open"_s}, {{u"⌘"_s, u"↩"_s}, u"open with…"_s}, {{u"esc"_s}, u"close"_s}};
}

std::vector<KeyHint> commandHints() {
  return {{{u"↑"_s, u"↓"_s}, u"move"_s}, {{u"↩"_s}, u"open"_s}, {{u"esc"_s}, u"back"_s}};
}

void follow(PaletteView& view, const OpenProjectModel& model) {
  const bool isChoosing = model.isChoosingCommand();
  view.search().setPlaceholder(isChoosing
                                   ? u"Open %1 with…"_s.arg(visibleLine(model.chosenFolder()->name(), kShownName))
                                   : u"Filter projects…"_s);
  view.footer().setHints(isChoosing ? commandHints() : projectHints());
}

PaletteView* makeView(OpenProjectController& controller) {
  OpenProjectModel& model = controller.model();
  auto* view = new PaletteView(model, new OpenProjectRowDelegate,
                               {.title = u"Open Project"_s,
                                .placeholder = u"Filter projects…"_s,
                                .listName = u"Projects"_s,
                                .hints = projectHints()});
  QObject::connect(&model, &PaletteListModel::changed, view, [view, &model] { follow(*view, model); });
  QObject::connect(view, &PaletteView::chosen, view, [&controller](int row) { controller.choose(row); });
  return view;
}

}  // namespace

OpenProjectWindow::OpenProjectWindow(PanelWindow& native, OpenProjectController& controller)
    : PaletteWindow(native, makeView(controller), controller) {}
