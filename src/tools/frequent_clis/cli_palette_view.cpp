#include "tools/frequent_clis/cli_palette_view.h"

#include "core/ui/palette_list.h"
#include "core/ui/panel_menu.h"
#include "platform/command_key.h"
#include "tools/frequent_clis/cli_row_delegate.h"
#include "tools/frequent_clis/palette_model.h"

using namespace Qt::StringLiterals;

CLIPaletteView::CLIPaletteView(PaletteModel& model, QWidget* parent)
    : PaletteView(model, new CLIRowDelegate,
                  {.title = u"Frequent CLIs"_s,
                   .placeholder = u"Type to filter…"_s,
                   .listName = u"Commands"_s,
                   .hints = {{{u"↩"_s}, u"= runs immediately"_s}, {{u"esc"_s}, u"close"_s}}},
                  parent),
      model_(model),
      menu_(new PanelMenu(u"Menu of the command"_s, this)) {
  list().setContextMenuPolicy(Qt::CustomContextMenu);
  connect(&list(), &QWidget::customContextMenuRequested, this, &CLIPaletteView::showMenu);
}

void CLIPaletteView::showMenu(const QPoint& position) {
  const QModelIndex index = list().indexAt(position);
  if (!index.isValid()) return;
  model_.select(index.row());
  const auto edit = [this] { Q_EMIT editRequested(model_.selectionIndex()); };
  menu_->popup({{u"Edit Command…"_s, keyCaps({u"⌘"_s, u"E"_s}), edit}}, list().viewport()->mapTo(this, position));
}
