#include "tools/inject_md/inject_md_row_delegate.h"

#include <QPainter>

#include "core/ui/icon_tile.h"
#include "core/ui/theme.h"
#include "tools/inject_md/inject_md_palette_model.h"

namespace {

constexpr int kTileToText = 12;
constexpr int kNotice = 40;

}  // namespace

void InjectMDRowDelegate::paintContents(QPainter& painter, const QModelIndex& index, const RowLook& look) const {
  const QString symbol = index.data(InjectMDPaletteModel::SymbolRole).toString();
  if (symbol.isEmpty()) return ProjectRowDelegate::paintContents(painter, index, look);
  const int top = look.area.top() + (look.area.height() - Theme::kIconTile) / 2;
  IconTile{.symbol = symbol, .monogram = {}, .color = {}}.paint(
      painter, QRect(look.area.left(), top, Theme::kIconTile, Theme::kIconTile), look.theme,
      look.selected ? IconTile::Ground::selection : IconTile::Ground::card);
  const QRect texts = look.area.adjusted(Theme::kIconTile + kTileToText, 0, 0, 0);
  paintTitleAndDetail(painter, texts, index.data(ProjectListModel::NameRole).toString(),
                      index.data(ProjectListModel::PathRole).toString(), look);
}

int InjectMDRowDelegate::headingHeight(const QModelIndex& index) const {
  return index.data(InjectMDPaletteModel::NoticeRole).isNull() ? 0 : kNotice;
}

void InjectMDRowDelegate::paintHeading(QPainter& painter, const QModelIndex& index, const QRect& area,
                                       const Theme& theme) const {
  painter.setFont(Theme::rowFont());
  painter.setPen(theme.secondary);
  painter.drawText(area, Qt::AlignVCenter, index.data(InjectMDPaletteModel::NoticeRole).toString());
}
