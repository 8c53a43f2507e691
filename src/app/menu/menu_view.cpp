#include "app/menu/menu_view.h"

#include <QAccessible>
#include <QLabel>
#include <QStackedLayout>
#include <QVBoxLayout>

#include <utility>

#include "app/menu/menu_controller.h"
#include "app/menu/menu_list.h"
#include "app/menu/menu_row_delegate.h"
#include "core/ui/search_field.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kSearchHeight = 48;
constexpr int kSide = Theme::kGrid;
constexpr int kEmptyHeight = 2 * MenuRowDelegate::kRowHeight;

int heightOf(const MenuRow& row) {
  return row.kind == MenuRow::Kind::separator ? MenuRowDelegate::kSeparatorHeight : MenuRowDelegate::kRowHeight;
}

}  // namespace

MenuView::MenuView(MenuController& controller, QWidget* parent)
    : QWidget(parent),
      controller_(controller),
      model_(controller.model()),
      search_(new SearchField(u"Find a tool"_s)),
      list_(new MenuList),
      empty_(new QLabel(u"No matching tools"_s)) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(0);
  search_->setFixedHeight(kSearchHeight);
  column->addWidget(search_);
  column->addWidget(makeResults(), 1);
  connect(list_, &MenuList::pointed, &controller_, &MenuController::highlight);
  connect(list_, &QListView::clicked, this, [this](const QModelIndex& index) { controller_.choose(index.row()); });
  connect(&model_, &MenuModel::changed, this, &MenuView::follow);
  follow();
}

QWidget* MenuView::makeResults() {
  list_->setModel(&model_);
  list_->setItemDelegate(new MenuRowDelegate(list_));
  empty_->setAlignment(Qt::AlignCenter);
  empty_->setFont(Theme::rowFont());
  empty_->setForegroundRole(QPalette::PlaceholderText);
  auto* results = new QWidget;
  auto* inset = new QVBoxLayout(results);
  inset->setContentsMargins(kSide, 0, kSide, kSide);
  inset->addLayout(results_ = new QStackedLayout);
  results_->addWidget(list_);
  results_->addWidget(empty_);
  return results;
}

QSize MenuView::wantedSize() const {
  int rows = 0;
  for (const MenuRow& row : model_.rows()) rows += heightOf(row);
  return {kWidth, kSearchHeight + (rows > 0 ? rows : kEmptyHeight) + kSide};
}

void MenuView::follow() {
  search_->setText(model_.query());
  results_->setCurrentWidget(model_.rowCount() > 0 ? static_cast<QWidget*>(list_) : empty_);
  const int height = wantedSize().height();
  if (std::exchange(wantedHeight_, height) != height) Q_EMIT wantedSizeChanged();
  const QModelIndex index = model_.index(model_.selection());
  list_->setCurrentIndex(index);
  if (!index.isValid()) return;
  list_->scrollTo(index);
  announceSelection();
}

/// The list never has the focus, yet a screen reader shall speak the row that Return would choose.
void MenuView::announceSelection() {
  if (!QAccessible::isActive()) return;
  QAccessibleEvent event(list_, QAccessible::Focus);
  event.setChild(model_.selection());
  QAccessible::updateAccessibility(&event);
}
