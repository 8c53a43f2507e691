#include "tools/frequent_clis/icon_picker_grid.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QScreen>
#include <QStackedLayout>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include "core/ui/card_frame.h"
#include "core/ui/icon.h"
#include "core/ui/icon_tile.h"
#include "core/ui/palette_list.h"
#include "core/ui/theme.h"
#include "tools/frequent_clis/icon_picker_model.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kRadius = 10;
constexpr int kColumns = 5;
constexpr QSize kCell(76, 72);
constexpr int kTile = 36;
constexpr int kSymbol = 16;
constexpr int kScrollBar = 18;
constexpr QSize kSize(kColumns* kCell.width() + kScrollBar + 2 * Theme::kGrid, 336);

/// One icon: its tile over its name.
class IconCellDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override { return kCell; }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const Theme& theme = themeOf(*option.widget);
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (selected || option.state.testFlag(QStyle::State_MouseOver)) {
      painter->setPen(Qt::NoPen);
      painter->setBrush(selected ? theme.selection : theme.hover);
      painter->drawRoundedRect(option.rect.adjusted(2, 2, -2, -2), Theme::kRowRadius, Theme::kRowRadius);
    }
    const QRect tile(option.rect.center().x() - kTile / 2 + 1, option.rect.top() + Theme::kGrid, kTile, kTile);
    IconTile{.symbol = {},
             .monogram = index.data(IconPickerModel::MonogramRole).toString(),
             .color = index.data(IconPickerModel::ColorRole).value<QColor>()}
        .paint(*painter, tile, theme, selected ? IconTile::Ground::selection : IconTile::Ground::card);
    const QRect name(option.rect.left() + 4, tile.bottom() + 3, option.rect.width() - 8, 20);
    painter->setFont(Theme::detailFont());
    painter->setPen(selected ? theme.onAccent : theme.secondary);
    const QString text = index.data(IconPickerModel::NameRole).toString();
    painter->drawText(name, Qt::AlignCenter, painter->fontMetrics().elidedText(text, Qt::ElideRight, name.width()));
    painter->restore();
  }
};

PaletteList* makeGrid(QAbstractItemModel* model) {
  auto* grid = new PaletteList(u"Icons"_s);
  grid->setFocusPolicy(Qt::StrongFocus);
  grid->setModel(model);
  grid->setItemDelegate(new IconCellDelegate(grid));
  grid->setViewMode(QListView::IconMode);
  grid->setMovement(QListView::Static);
  grid->setResizeMode(QListView::Adjust);
  grid->setGridSize(kCell);
  return grid;
}

QLineEdit* makeSearch(const Theme& theme, qreal ratio) {
  auto* search = new QLineEdit;
  search->setFont(Theme::rowFont());
  search->setPlaceholderText(u"Search icons"_s);
  search->setAccessibleName(u"Search icons"_s);
  search->setClearButtonEnabled(true);
  search->addAction(QIcon(symbolPixmap(u"magnifyingglass"_s, kSymbol, theme.secondary, ratio)),
                    QLineEdit::LeadingPosition);
  search->setStyleSheet(
      u"QLineEdit { background: %1; border: none; border-radius: 6px; padding: 6px 4px }"_s.arg(theme.raised.name()));
  return search;
}

QLabel* makeEmptyLabel() {
  auto* label = new QLabel;
  label->setAlignment(Qt::AlignCenter);
  label->setWordWrap(true);
  label->setTextFormat(Qt::PlainText);
  label->setFont(Theme::rowFont());
  label->setForegroundRole(QPalette::PlaceholderText);
  return label;
}

}  // namespace

IconPickerGrid::IconPickerGrid(const QString& current, QWidget* parent)
    : QFrame(parent, Qt::Popup),
      model_(new IconPickerModel(this)),
      search_(makeSearch(themeOf(*this), devicePixelRatioF())),
      grid_(makeGrid(model_)),
      empty_(makeEmptyLabel()) {
  setAttribute(Qt::WA_DeleteOnClose);
  setAccessibleName(u"Icons"_s);
  setFixedSize(kSize);
  search_->installEventFilter(this);
  grid_->installEventFilter(this);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(Theme::kGrid, Theme::kGrid, Theme::kGrid, Theme::kGrid);
  layout->addWidget(search_);
  layout->addWidget(makeResults(), 1);
  connect(search_, &QLineEdit::textChanged, this, &IconPickerGrid::filter);
  connect(grid_, &QListView::clicked, this, &IconPickerGrid::pick);

  const QModelIndexList marked = model_->match(model_->index(0), IconPickerModel::IdRole, current, 1, Qt::MatchExactly);
  grid_->setCurrentIndex(marked.isEmpty() ? model_->index(0) : marked.first());
  setFocusProxy(search_);
}

QWidget* IconPickerGrid::makeResults() {
  auto* results = new QWidget;
  results_ = new QStackedLayout(results);
  results_->addWidget(grid_);
  results_->addWidget(empty_);
  return results;
}

void IconPickerGrid::popupAt(const QWidget& anchor) {
  const QRect room = anchor.screen()->availableGeometry();
  const QPoint below = anchor.mapToGlobal(QPoint(0, anchor.height() + 4));
  const bool fits = below.y() + height() <= room.bottom();
  const QPoint above = anchor.mapToGlobal(QPoint(0, -4 - height()));
  const int x = std::clamp(below.x(), room.left(), std::max(room.left(), room.right() - width()));
  move(x, fits || above.y() < room.top() ? below.y() : above.y());
  show();
  search_->setFocus(Qt::PopupFocusReason);
  grid_->scrollTo(grid_->currentIndex());
}

void IconPickerGrid::filter(const QString& query) {
  model_->setQuery(query);
  if (model_->rowCount() == 0) {
    empty_->setText(model_->emptyText());
    results_->setCurrentWidget(empty_);
    return;
  }
  results_->setCurrentWidget(grid_);
  grid_->setCurrentIndex(model_->index(0));
}

void IconPickerGrid::pick(const QModelIndex& index) {
  if (!index.isValid()) return;
  const QString id = index.data(IconPickerModel::IdRole).toString();
  close();
  Q_EMIT picked(id);
}

void IconPickerGrid::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillRect(rect(), theme.card);
  painter.setPen(QPen(theme.hairline, 1));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
}

void IconPickerGrid::resizeEvent(QResizeEvent*) { setMask(roundedRegion(rect(), kRadius)); }

// One set of keys for field and grid: letters search, arrows walk through the grid, Return picks.
bool IconPickerGrid::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QFrame::eventFilter(watched, event);
  const auto& key = static_cast<const QKeyEvent&>(*event);
  if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) {
    pick(grid_->currentIndex());
    return true;
  }
  return watched == search_ ? handleSearchKey(key.key()) : handleGridKey(key.key(), key.text());
}

bool IconPickerGrid::handleSearchKey(int key) {
  if (key != Qt::Key_Down || model_->rowCount() == 0) return false;
  grid_->setFocus(Qt::OtherFocusReason);
  return true;
}

bool IconPickerGrid::handleGridKey(int key, const QString& text) {
  if (key == Qt::Key_Up && grid_->currentIndex().row() < kColumns) {
    search_->setFocus(Qt::OtherFocusReason);
    return true;
  }
  if (key == Qt::Key_Backspace) {
    search_->setFocus(Qt::OtherFocusReason);
    search_->backspace();
    return true;
  }
  if (text.isEmpty() || !text.front().isPrint()) return false;
  search_->setFocus(Qt::OtherFocusReason);
  search_->insert(text);
  return true;
}
