#include "tools/inject_md/inject_md_palette_window.h"

#include "core/ui/palette_list.h"
#include "core/ui/palette_view.h"
#include "core/ui/search_field.h"
#include "tools/inject_md/diff_view.h"
#include "tools/inject_md/inject_md_palette_controller.h"
#include "tools/inject_md/inject_md_row_delegate.h"

using namespace Qt::StringLiterals;

namespace {

using Step = InjectMDPaletteModel::Step;

QString symbol(Step step) {
  if (step == Step::overwrite) return u"exclamationmark.triangle.fill"_s;
  return step == Step::document ? u"arrow.down.doc.fill"_s : u"magnifyingglass"_s;
}

std::vector<KeyHint> hints(const InjectMDPaletteModel& model, bool hasPages) {
  std::vector<KeyHint> hints{{{u"↑"_s, u"↓"_s}, u"pick"_s}, {{u"↩"_s}, model.verb()}};
  if (hasPages) hints.push_back({{u"PgUp"_s, u"PgDn"_s}, u"scroll"_s});
  hints.push_back({{u"esc"_s}, model.escapeVerb()});
  return hints;
}

PaletteView* makeView(InjectMDPaletteController& controller) {
  InjectMDPaletteModel& model = controller.model();
  auto* view = new PaletteView(
      model, new InjectMDRowDelegate,
      {.title = u"Inject MD"_s, .placeholder = model.prompt(), .listName = u"Inject MD"_s, .hints = {}});
  // The row below a notice is taller.
  view->list().setUniformItemSizes(false);
  auto* changes = new DiffView;
  view->addBelow(changes);
  const auto follow = [view, changes, &model] {
    view->search().setPlaceholder(model.prompt());
    view->search().setSymbol(symbol(model.step()));
    changes->setLines(model.changes());
    view->footer().setHints(hints(model, changes->hasPages()));
  };
  QObject::connect(&model, &PaletteListModel::changed, view, follow);
  follow();
  QObject::connect(&controller, &InjectMDPaletteController::turned, changes, &DiffView::turn);
  QObject::connect(view, &PaletteView::chosen, view, [&controller](int row) { controller.choose(row); });
  return view;
}

}  // namespace

InjectMDPaletteWindow::InjectMDPaletteWindow(PanelWindow& native, InjectMDPaletteController& controller)
    : PaletteWindow(native, makeView(controller), controller) {}
