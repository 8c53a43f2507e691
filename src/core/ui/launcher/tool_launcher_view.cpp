#include "core/ui/launcher/tool_launcher_view.h"

#include <QHBoxLayout>
#include <QPainter>

#include "core/ui/footer_hints.h"
#include "core/ui/launcher/arrange_title.h"
#include "core/ui/launcher/page_dots.h"
#include "core/ui/launcher/sort_mode_control.h"
#include "core/ui/launcher/text_button.h"
#include "core/ui/launcher/tool_grid.h"
#include "core/ui/launcher/tool_launcher_controller.h"
#include "core/ui/search_field.h"
#include "core/ui/theme.h"
#include "platform/command_key.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kSide = 2 * Theme::kGrid;

std::vector<KeyHint> hints(bool isArranging) {
  const KeyHint navigate{{u"↑↓←→"_s}, u"navigate"_s};
  const KeyHint carry{{u"⌘←↑↓→"_s}, u"carry"_s};
  if (isArranging) return {navigate, carry, {{u"⌘P"_s}, u"pin"_s}, {{u"↩"_s}, u"done"_s}};
  return {navigate, carry, {{u"⌘P"_s}, u"pin"_s}};
}

}  // namespace

ToolLauncherView::ToolLauncherView(ToolLauncherController& controller, const SystemInfo& system, QWidget* parent)
    : QWidget(parent), controller_(controller) {
  setAccessibleName(u"Tools"_s);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(makeHeader());
  grid_ = new ToolGrid(controller_, system, this);
  column->addWidget(grid_);
  column->addWidget(makeFooter());
  connect(&controller_.model(), &ToolLauncherModel::changed, this, &ToolLauncherView::refresh);
  refresh();
}

QWidget* ToolLauncherView::makeHeader() {
  auto* header = new QWidget(this);
  header->setFixedHeight(SearchField::kHeight);
  auto* row = new QHBoxLayout(header);
  row->setContentsMargins(0, 0, kSide, 0);
  row->setSpacing(Theme::kGrid);
  query_ = new SearchField(u"Find a tool"_s, header);
  title_ = new ArrangeTitle(header);
  sortMode_ = new SortModeControl(SortModeControl::Look::symbols, header);
  for (QWidget* part : {static_cast<QWidget*>(query_), static_cast<QWidget*>(title_), static_cast<QWidget*>(sortMode_)})
    row->addWidget(part);
  connect(sortMode_, &SortModeControl::modeChosen, &controller_, &ToolLauncherController::setSortMode);
  return header;
}

QWidget* ToolLauncherView::makeFooter() {
  hints_ = new FooterHints({}, this);
  hints_->setFixedHeight(FooterHints::kHeight);
  auto* row = new QHBoxLayout(hints_);
  row->setContentsMargins(0, 1, Theme::kGrid, 0);
  row->setSpacing(4);
  row->addStretch();
  dots_ = new PageDots(hints_);
  arrange_ = new TextButton(hints_);
  row->addWidget(dots_);
  row->addWidget(arrange_);
  connect(dots_, &PageDots::pageChosen, this,
          [this](int page) { controller_.turnPage(page - controller_.model().currentPage()); });
  connect(arrange_, &QAbstractButton::clicked, this,
          [this] { controller_.setArranging(!controller_.model().isArranging()); });
  return hints_;
}

QSize ToolLauncherView::wantedSize() const {
  const int rows = controller_.model().gridRows();
  return {ToolGrid::kWidth, SearchField::kHeight + ToolGrid::heightFor(rows) + FooterHints::kHeight};
}

void ToolLauncherView::refresh() {
  const ToolLauncherModel& model = controller_.model();
  query_->setVisible(!model.isArranging());
  query_->setText(model.query());
  title_->setVisible(model.isArranging());
  title_->setQuery(model.query());
  sortMode_->setMode(controller_.registry().sortMode());
  grid_->refresh();
  refreshFooter();
  if (std::exchange(gridRows_, model.gridRows()) != model.gridRows()) Q_EMIT wantedSizeChanged();
}

void ToolLauncherView::wheelEvent(QWheelEvent* event) {
  if (const int pages = wheel_.pages(*event)) controller_.turnPage(pages);
}

void ToolLauncherView::refreshFooter() {
  const ToolLauncherModel& model = controller_.model();
  const auto selected = model.selectedItem();
  const ToolTile* tile = selected ? grid_->tile(selected->id()) : nullptr;
  hints_->setHints(hints(model.isArranging()));
  hints_->setNotice(tile ? tile->face().obstacle : QString());
  dots_->setPages(model.currentPage(), model.pageCount());
  arrange_->setLabel(model.isArranging() ? u"Done"_s : u"Arrange Tools…"_s);
  arrange_->setToolTip(model.isArranging() ? QString() : keyText(u"Reorder the grid (⌘E)"_s));
}
