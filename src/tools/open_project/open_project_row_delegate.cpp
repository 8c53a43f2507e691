#include "tools/open_project/open_project_row_delegate.h"

#include <QPainter>

#include "core/ui/icon_tile.h"
#include "core/ui/theme.h"
#include "tools/open_project/open_project_model.h"

namespace {

using Model = OpenProjectModel;

constexpr int kTileToText = 12;
constexpr double kGreyed = 0.5;

}  // namespace

void OpenProjectRowDelegate::paintContents(QPainter& painter, const QModelIndex& index, const RowLook& look) const {
  if (!index.data(Model::IsPresetRole).toBool()) {
    ProjectRowDelegate::paintContents(painter, index, look);
    return;
  }
  if (index.data(Model::IsMissingRole).toBool()) painter.setOpacity(kGreyed);
  const IconTile tile{.symbol = index.data(Model::IconRole).toString(), .monogram = {}, .color = {}};
  const int top = look.area.top() + (look.area.height() - Theme::kIconTile) / 2;
  tile.paint(painter, QRect(look.area.left(), top, Theme::kIconTile, Theme::kIconTile), look.theme,
             look.selected ? IconTile::Ground::selection : IconTile::Ground::card);
  paintTitleAndDetail(painter, look.area.adjusted(Theme::kIconTile + kTileToText, 0, 0, 0),
                      index.data(Model::NameRole).toString(), index.data(Model::PathRole).toString(), look);
}
