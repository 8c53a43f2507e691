#include "app/settings/arrange_grid.h"

#include <QHBoxLayout>
#include <QKeyEvent>

#include "core/ui/accessible_roles.h"
#include "core/ui/key_event.h"
#include "core/ui/launcher/page_dots.h"
#include "core/ui/launcher/tool_grid.h"
#include "core/ui/settings_form.h"
#include "core/ui/symbol_label.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kPinSize = 12;

}  // namespace

ArrangeGrid::ArrangeGrid(AppContext& context)
    : controller_({context.registry, context.network, *context.platform.sounds, context.clock}),
      grid_(new ToolGrid(controller_, *context.platform.systemInfo, this)) {
  setAccessibleRole(*this, QAccessible::List);
  setFocusPolicy(Qt::StrongFocus);
  setAccessibleName(u"Arrange your grid"_s);
  setAccessibleDescription(u"Arrows choose a tool; with Control they carry it, Control P pins it."_s);
  grid_->setHighlightShown(false);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(Theme::kGrid);
  column->addWidget(grid_, 0, Qt::AlignHCenter);
  column->addWidget(makeFooter(), 0, Qt::AlignHCenter);
  controller_.model().reset(context.registry.items());
  controller_.model().setArranging(true);
  controller_.model().setShown(true);
  connect(&controller_.model(), &ToolLauncherModel::changed, this, &ArrangeGrid::refresh);
  refresh();
}

QWidget* ArrangeGrid::makeFooter() {
  auto* footer = new QWidget(this);
  footer->setFixedWidth(ToolGrid::kWidth);
  auto* row = new QHBoxLayout(footer);
  row->setContentsMargins(2 * Theme::kGrid, 0, 2 * Theme::kGrid, 0);
  row->setSpacing(Theme::kGrid);
  row->addWidget(new SymbolLabel(u"pin.fill"_s, kPinSize, footer));
  row->addWidget(makeDetailLabel(u"Pinned to the front of the grid"_s, footer), 1);
  dots_ = new PageDots(footer);
  row->addWidget(dots_);
  connect(dots_, &PageDots::pageChosen, this,
          [this](int page) { controller_.turnPage(page - controller_.model().currentPage()); });
  return footer;
}

void ArrangeGrid::refresh() {
  grid_->refresh();
  dots_->setPages(controller_.model().currentPage(), controller_.model().pageCount());
}

void ArrangeGrid::keyPressEvent(QKeyEvent* event) {
  if (!controller_.handleGridKey(keyPress(*event))) QWidget::keyPressEvent(event);
}

void ArrangeGrid::focusInEvent(QFocusEvent*) { grid_->setHighlightShown(true); }

void ArrangeGrid::focusOutEvent(QFocusEvent*) { grid_->setHighlightShown(false); }
