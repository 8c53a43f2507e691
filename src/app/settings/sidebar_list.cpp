#include "app/settings/sidebar_list.h"

#include <QEvent>
#include <QPainter>
#include <QStyledItemDelegate>

#include "core/ui/icon.h"
#include "core/ui/theme.h"

namespace {

constexpr int kRowHeight = 34;
constexpr int kIcon = 18;
constexpr int kPadding = 10;
constexpr int kMargin = Theme::kGrid;
/// The first row stands level with the heading of the page beside it.
constexpr int kTopMargin = 2 * Theme::kGrid;

enum Role { SymbolRole = Qt::UserRole, DimmedRole };

class SidebarDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const Theme& theme = themeOf(*option.widget);
    const bool focused = isSelected(option) && option.widget->hasFocus();
    const bool dimmed = index.data(DimmedRole).toBool() && !isSelected(option);
    const QColor idle = dimmed ? theme.secondary : theme.text;
    const QColor color = focused ? theme.onAccent : idle;
    const QRect row = option.rect.adjusted(0, 1, 0, -1);

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(focused ? theme.selection : ground(theme, option));
    painter->drawRoundedRect(row, Theme::kRowRadius, Theme::kRowRadius);
    const QRect icon(row.left() + kPadding, row.center().y() - kIcon / 2 + 1, kIcon, kIcon);
    paintSymbol(*painter, index.data(SymbolRole).toString(), icon, color);
    painter->setPen(color);
    painter->setFont(option.font);
    const QRect text = row.adjusted(2 * kPadding + kIcon, 0, -kPadding, 0);
    painter->drawText(text, Qt::AlignVCenter | Qt::TextSingleLine, index.data().toString());
    painter->restore();
  }

  QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override { return {0, kRowHeight}; }

 private:
  static bool isSelected(const QStyleOptionViewItem& option) { return option.state.testFlag(QStyle::State_Selected); }

  // The accent is where the keyboard is: a chosen row elsewhere is quiet.
  static QColor ground(const Theme& theme, const QStyleOptionViewItem& option) {
    if (isSelected(option)) return theme.idleSelection;
    return option.state.testFlag(QStyle::State_MouseOver) ? theme.hover : QColor(Qt::transparent);
  }
};

}  // namespace

SidebarList::SidebarList(const QString& name, int width, QWidget* parent) : QListWidget(parent) {
  setAccessibleName(name);
  setFixedWidth(width);
  setFrameShape(QFrame::NoFrame);
  setViewportMargins(kMargin, kTopMargin, kMargin, 0);
  setMouseTracking(true);
  setFont(Theme::detailFont());
  setItemDelegate(new SidebarDelegate(this));
  viewport()->setAutoFillBackground(false);
}

void SidebarList::addEntry(const QString& title, const QString& symbol) {
  auto* item = new QListWidgetItem(title, this);
  item->setData(SymbolRole, symbol);
}

QItemSelectionModel::SelectionFlags SidebarList::selectionCommand(const QModelIndex& index, const QEvent*) const {
  return index.isValid() ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
}

void SidebarList::setDimmed(int row, bool dimmed) { item(row)->setData(DimmedRole, dimmed); }

// The line is on the frame, which paints itself without being asked.
bool SidebarList::event(QEvent* event) {
  const bool handled = QListWidget::event(event);
  if (event->type() == QEvent::Paint)
    QPainter(this).fillRect(QRect(width() - 1, 0, 1, height()), themeOf(*this).hairline);
  return handled;
}
