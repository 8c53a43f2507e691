#include "tools/projects/project_row_delegate.h"

#include <QPainter>

#include "core/ui/icon_tile.h"
#include "core/ui/theme.h"
#include "tools/projects/project_list_model.h"

using namespace Qt::StringLiterals;

namespace {

using Model = ProjectListModel;

constexpr int kTileToText = 12;
constexpr int kGap = 8;
constexpr int kAgentMark = 18;
constexpr int kBadgeHeight = 18;
constexpr int kBadgePadding = 6;
/// Times stand below one another whatever they say: the widest of them, dates aside.
constexpr auto kWidestTime = "00 min ago"_L1;

/// Each of these draws at the right end of `area` and returns what is left of it.
QRect paintTime(QPainter& painter, QRect area, const QString& time, const RowLook& look) {
  const QFontMetrics metrics(look.detailFont);
  const int width = std::max(metrics.horizontalAdvance(time), metrics.horizontalAdvance(kWidestTime)) + 2;
  painter.setFont(look.detailFont);
  painter.setPen(look.secondary);
  painter.drawText(QRect(area.right() + 1 - width, area.top(), width, area.height()), Qt::AlignVCenter | Qt::AlignRight,
                   time);
  area.setRight(area.right() - width - kGap);
  return area;
}

QRect paintAgents(QPainter& painter, QRect area, const QStringList& agents, const RowLook& look) {
  for (auto agent = agents.crbegin(); agent != agents.crend(); ++agent) {
    const bool isClaude = *agent == "claude"_L1;
    const IconTile tile{
        .symbol = {}, .monogram = isClaude ? u"Cl"_s : u"Cx"_s, .color = QColor(isClaude ? 0xC15F3C : 0x10A37F)};
    const int top = area.top() + (area.height() - kAgentMark) / 2;
    tile.paint(painter, QRect(area.right() + 1 - kAgentMark, top, kAgentMark, kAgentMark), look.theme,
               look.selected ? IconTile::Ground::selection : IconTile::Ground::card);
    area.setRight(area.right() - kAgentMark - kGap / 2);
  }
  area.setRight(area.right() - kGap / 2);
  return area;
}

QRect paintBadge(QPainter& painter, QRect area, const QString& tag, const QColor& color, const RowLook& look) {
  if (tag.isEmpty()) return area;
  QFont font = look.detailFont;
  font.setWeight(QFont::DemiBold);
  const int width = QFontMetrics(font).horizontalAdvance(tag) + 2 * kBadgePadding;
  const QRect badge(area.right() + 1 - width, area.top() + (area.height() - kBadgeHeight) / 2, width, kBadgeHeight);
  painter.setPen(look.selected ? QPen(look.theme.onAccent) : QPen(Qt::NoPen));
  painter.setBrush(color);
  painter.drawRoundedRect(QRectF(badge).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
  painter.setFont(font);
  painter.setPen(Qt::white);
  painter.drawText(badge, Qt::AlignCenter, tag);
  area.setRight(area.right() - width - kGap);
  return area;
}

}  // namespace

void ProjectRowDelegate::paintContents(QPainter& painter, const QModelIndex& index, const RowLook& look) const {
  const IconTile tile{.symbol = u"folder"_s, .monogram = {}, .color = {}};
  const int top = look.area.top() + (look.area.height() - Theme::kIconTile) / 2;
  tile.paint(painter, QRect(look.area.left(), top, Theme::kIconTile, Theme::kIconTile), look.theme,
             look.selected ? IconTile::Ground::selection : IconTile::Ground::card);
  QRect rest = look.area.adjusted(Theme::kIconTile + kTileToText, 0, 0, 0);
  rest = paintTime(painter, rest, index.data(Model::TimeRole).toString(), look);
  rest = paintAgents(painter, rest, index.data(Model::AgentsRole).toStringList(), look);
  rest = paintBadge(painter, rest, index.data(Model::KindTagRole).toString(),
                    index.data(Model::KindColorRole).value<QColor>(), look);
  paintTitleAndDetail(painter, rest, index.data(Model::NameRole).toString(), index.data(Model::PathRole).toString(),
                      look);
}
