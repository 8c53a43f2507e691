#include "tools/frequent_clis/cli_row_delegate.h"

#include <QPainter>

#include "core/ui/icon_tile.h"
#include "core/ui/key_caps.h"
#include "core/ui/theme.h"
#include "tools/frequent_clis/palette_model.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kTileToText = 12;

/// Draws the cap at the trailing edge and returns what is left of `area`.
QRect paintReturnCap(QPainter& painter, const QRect& area, const RowLook& look) {
  const KeyCapRow cap{{u"↩"_s}};
  const int width = static_cast<int>(cap.size().width());
  const QPointF corner(area.right() + 1 - width, area.top() + (area.height() - KeyCapRow::kHeight) / 2.0);
  cap.paint(painter, corner, look.theme, look.selected ? KeyCapGround::selection : KeyCapGround::card);
  return area.adjusted(0, 0, -width - kTileToText, 0);
}

}  // namespace

void CLIRowDelegate::paintContents(QPainter& painter, const QModelIndex& index, const RowLook& look) const {
  const int tileTop = look.area.top() + (look.area.height() - Theme::kIconTile) / 2;
  const QRect tile(look.area.left(), tileTop, Theme::kIconTile, Theme::kIconTile);
  IconTile{.symbol = {},
           .monogram = index.data(PaletteModel::MonogramRole).toString(),
           .color = index.data(PaletteModel::IconColorRole).value<QColor>()}
      .paint(painter, tile, look.theme, look.selected ? IconTile::Ground::selection : IconTile::Ground::card);

  QRect texts = look.area.adjusted(Theme::kIconTile + kTileToText, 0, 0, 0);
  if (index.data(PaletteModel::PressReturnRole).toBool()) texts = paintReturnCap(painter, texts, look);
  RowLook monospaced = look;
  monospaced.detailFont = Theme::monospacedFont();
  paintTitleAndDetail(painter, texts, index.data(PaletteModel::TitleRole).toString(),
                      index.data(PaletteModel::CommandPreviewRole).toString(), monospaced);
}
