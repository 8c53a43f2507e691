#include "tools/file_drop/item_row_delegate.h"

#include <QPainter>

#include "core/ui/icon_tile.h"
#include "core/ui/theme.h"
#include "tools/file_drop/bulk_upload_model.h"

using namespace Qt::StringLiterals;

namespace {

using Model = BulkUploadModel;

constexpr int kTileToText = 12;

QString symbol(const QModelIndex& index) {
  if (index.data(Model::HasFaultRole).toBool()) return u"exclamationmark.triangle.fill"_s;
  return index.data(Model::IsFolderRole).toBool() ? u"folder"_s : u"doc"_s;
}

}  // namespace

void ItemRowDelegate::paintContents(QPainter& painter, const QModelIndex& index, const RowLook& look) const {
  const IconTile tile{.symbol = symbol(index), .monogram = {}, .color = {}};
  const int top = look.area.top() + (look.area.height() - Theme::kIconTile) / 2;
  tile.paint(painter, QRect(look.area.left(), top, Theme::kIconTile, Theme::kIconTile), look.theme,
             look.selected ? IconTile::Ground::selection : IconTile::Ground::card);
  paintTitleAndDetail(painter, look.area.adjusted(Theme::kIconTile + kTileToText, 0, 0, 0),
                      index.data(Model::NameRole).toString(), index.data(Model::DetailRole).toString(), look);
}
