#include "app/menu/menu_row_delegate.h"

#include <QPainter>

#include <cmath>

#include "app/menu/menu_model.h"
#include "core/ui/icon.h"
#include "core/ui/icon_tile.h"
#include "core/ui/key_caps.h"
#include "core/ui/theme.h"

namespace {

constexpr int kTile = 24;
constexpr int kSymbol = 16;
constexpr int kSymbolToText = 10;
constexpr int kNoteSymbol = 14;
constexpr int kNoteGap = 5;
/// How faint a tool is that cannot be started; white on the accent is fainter to begin with.
constexpr double kDimmed = 0.5;
constexpr double kDimmedOnSelection = 0.7;

MenuRow::Kind kindOf(const QModelIndex& index) {
  return static_cast<MenuRow::Kind>(index.data(MenuModel::kKindRole).toInt());
}

void paintSeparator(QPainter& painter, const QRect& area, const Theme& theme) {
  painter.fillRect(QRect(area.left(), area.center().y(), area.width(), 1), theme.hairline);
}

void paintIcon(QPainter& painter, const QModelIndex& index, const RowLook& look) {
  const QString symbol = index.data(MenuModel::kSymbolRole).toString();
  const QRect tile(look.area.left(), look.area.top() + (look.area.height() - kTile) / 2, kTile, kTile);
  constexpr int kInset = (kTile - kSymbol) / 2;
  if (kindOf(index) == MenuRow::Kind::entry)
    return paintSymbol(painter, symbol, tile.adjusted(kInset, kInset, -kInset, -kInset), look.secondary);
  IconTile{.symbol = symbol, .monogram = {}, .color = {}}.paint(
      painter, tile, look.theme, look.selected ? IconTile::Ground::selection : IconTile::Ground::card);
}

/// These return what is left of `area`.
QRect paintKeys(QPainter& painter, const QRect& area, const QModelIndex& index, const RowLook& look) {
  const KeyCapRow caps{index.data(MenuModel::kCapsRole).toStringList()};
  const int width = static_cast<int>(std::ceil(caps.size().width()));
  const QPointF corner(area.right() + 1 - width, area.top() + (area.height() - KeyCapRow::kHeight) / 2.0);
  caps.paint(painter, corner, look.theme, look.selected ? KeyCapGround::selection : KeyCapGround::card);
  return area.adjusted(0, 0, -width - kSymbolToText, 0);
}

QRect paintNote(QPainter& painter, const QRect& area, const QModelIndex& index, const RowLook& look) {
  const QString note = index.data(MenuModel::kNoteRole).toString();
  const QString symbol = index.data(MenuModel::kNoteSymbolRole).toString();
  painter.setFont(look.detailFont);
  painter.setPen(look.secondary);
  painter.drawText(area, Qt::AlignRight | Qt::AlignVCenter, note);
  int left = area.right() + 1 - painter.fontMetrics().horizontalAdvance(note);
  if (!symbol.isEmpty()) {
    left -= kNoteGap + kNoteSymbol;
    const int top = area.top() + (area.height() - kNoteSymbol) / 2;
    paintSymbol(painter, symbol, QRect(left, top, kNoteSymbol, kNoteSymbol), look.secondary);
  }
  return area.adjusted(0, 0, left - area.right() - 1 - kSymbolToText, 0);
}

}  // namespace

QSize MenuRowDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const {
  return {0, kindOf(index) == MenuRow::Kind::separator ? kSeparatorHeight : kRowHeight};
}

void MenuRowDelegate::paintContents(QPainter& painter, const QModelIndex& index, const RowLook& look) const {
  if (kindOf(index) == MenuRow::Kind::separator) return paintSeparator(painter, look.area, look.theme);
  const QRect texts = look.area.adjusted(kTile + kSymbolToText, 0, 0, 0);
  const bool hasNote = !index.data(MenuModel::kNoteRole).toString().isEmpty();
  const QRect title = hasNote ? paintNote(painter, texts, index, look) : paintKeys(painter, texts, index, look);
  if (!index.data(MenuModel::kUsableRole).toBool()) painter.setOpacity(look.selected ? kDimmedOnSelection : kDimmed);
  paintIcon(painter, index, look);
  paintTitleAndDetail(painter, title, index.data(Qt::DisplayRole).toString(), {}, look);
}
