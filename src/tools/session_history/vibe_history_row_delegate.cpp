#include "tools/session_history/vibe_history_row_delegate.h"

#include <QPainter>

#include "core/ui/icon.h"
#include "core/ui/icon_tile.h"
#include "core/ui/theme.h"
#include "tools/session_history/vibe_history_palette_model.h"

using namespace Qt::StringLiterals;

namespace {

using Model = VibeHistoryPaletteModel;

constexpr int kTileToText = 12;
constexpr int kDateHeading = 28;
constexpr int kProjectHeading = 22;
constexpr int kMark = 14;

/// The colours the agents go by.
IconTile agentTile(const QModelIndex& index) {
  const bool isClaude = index.data(Model::AgentRole).toString().startsWith(u'C') &&
                        index.data(Model::AgentRole).toString().contains(u' ');
  return {.symbol = {}, .monogram = isClaude ? u"Cl"_s : u"Cx"_s, .color = QColor(isClaude ? 0xC15F3C : 0x10A37F)};
}

/// Draws a symbol and a text at the right end of `area`, and returns what is left of it.
QRect paintMark(QPainter& painter, QRect area, const QString& symbol, const QString& text, const RowLook& look) {
  const QFontMetrics metrics(look.detailFont);
  const int gap = symbol.isEmpty() ? 0 : kMark + 4;
  // The advance is rounded; a pixel less would cut the text.
  const int width = std::min(metrics.horizontalAdvance(text) + 2, area.width() / 3);
  const QRect place(area.right() + 1 - width, area.top(), width, area.height());
  painter.setFont(look.detailFont);
  painter.setPen(look.secondary);
  painter.drawText(place, Qt::AlignVCenter, metrics.elidedText(text, Qt::ElideMiddle, width));
  if (gap > 0)
    paintSymbol(painter, symbol, QRectF(place.left() - gap, area.center().y() - kMark / 2.0 + 0.5, kMark, kMark),
                look.secondary);
  area.setRight(place.left() - gap - kTileToText);
  return area;
}

}  // namespace

void VibeHistoryRowDelegate::paintContents(QPainter& painter, const QModelIndex& index, const RowLook& look) const {
  const int top = look.area.top() + (look.area.height() - Theme::kIconTile) / 2;
  agentTile(index).paint(painter, QRect(look.area.left(), top, Theme::kIconTile, Theme::kIconTile), look.theme,
                         look.selected ? IconTile::Ground::selection : IconTile::Ground::card);
  QRect texts = look.area.adjusted(Theme::kIconTile + kTileToText, 0, 0, 0);
  texts = paintMark(painter, texts, {}, index.data(Model::TimeRole).toString(), look);
  const QString branch = index.data(Model::BranchRole).toString();
  if (!branch.isEmpty()) texts = paintMark(painter, texts, u"arrow.triangle.branch"_s, branch, look);
  const bool gone = index.data(Model::IsFolderGoneRole).toBool();
  const QString agent = index.data(Model::AgentRole).toString();
  paintTitleAndDetail(painter, texts, index.data(Model::TitleRole).toString(),
                      gone ? agent + u" · its folder is gone"_s : agent, look);
}

int VibeHistoryRowDelegate::headingHeight(const QModelIndex& index) const {
  const int date = index.data(Model::DateGroupRole).isNull() ? 0 : kDateHeading;
  return date + (index.data(Model::ProjectGroupRole).isNull() ? 0 : kProjectHeading);
}

void VibeHistoryRowDelegate::paintHeading(QPainter& painter, const QModelIndex& index, const QRect& area,
                                          const Theme& theme) const {
  QRect rest = area;
  if (const QVariant date = index.data(Model::DateGroupRole); !date.isNull()) {
    QFont font = Theme::detailFont();
    font.setWeight(QFont::DemiBold);
    painter.setFont(font);
    painter.setPen(theme.text);
    painter.drawText(QRect(rest.left(), rest.top(), rest.width(), kDateHeading), Qt::AlignVCenter, date.toString());
    rest.setTop(rest.top() + kDateHeading);
  }
  painter.setFont(Theme::detailFont());
  painter.setPen(theme.secondary);
  paintSymbol(painter, u"folder"_s, QRectF(rest.left(), rest.center().y() - kMark / 2.0 + 0.5, kMark, kMark),
              theme.secondary);
  const QRect name = rest.adjusted(kMark + 6, 0, 0, 0);
  painter.drawText(name, Qt::AlignVCenter,
                   QFontMetrics(Theme::detailFont())
                       .elidedText(index.data(Model::ProjectGroupRole).toString(), Qt::ElideRight, name.width()));
}
