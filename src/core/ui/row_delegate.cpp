#include "core/ui/row_delegate.h"

#include <QPainter>

#include "core/ui/theme.h"

void RowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const Theme& theme = option.widget ? themeOf(*option.widget) : Theme::light();
  const bool selected = option.state.testFlag(QStyle::State_Selected);
  const bool hovered = option.state.testFlag(QStyle::State_MouseOver);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  const int heading = headingHeight(index);
  const QRect row = option.rect.adjusted(0, heading, 0, 0);
  if (heading > 0)
    paintHeading(*painter, index, QRect(row.left() + kPadding, option.rect.top(), row.width() - 2 * kPadding, heading),
                 theme);
  if (selected || hovered) {
    painter->setPen(Qt::NoPen);
    painter->setBrush(selected ? theme.selection : theme.hover);
    painter->drawRoundedRect(row, Theme::kRowRadius, Theme::kRowRadius);
  }
  RowLook look{.theme = theme,
               .area = row.adjusted(kPadding, 0, -kPadding, 0),
               .selected = selected,
               .text = selected ? theme.onAccent : theme.text,
               .secondary = selected ? theme.onAccent : theme.secondary,
               .detailFont = Theme::detailFont()};
  paintContents(*painter, index, look);
  painter->restore();
}

QSize RowDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const {
  return {0, Theme::kRowHeight + headingHeight(index)};
}

void paintTitleAndDetail(QPainter& painter, const QRect& area, const QString& title, const QString& detail,
                         const RowLook& look) {
  const QFont titleFont = Theme::rowFont();
  const QFontMetrics titleMetrics(titleFont);
  const QFontMetrics detailMetrics(look.detailFont);
  constexpr int kLeading = 1;
  const int detailHeight = detail.isEmpty() ? 0 : detailMetrics.height() + kLeading;
  const int top = area.top() + (area.height() - titleMetrics.height() - detailHeight) / 2;
  painter.setFont(titleFont);
  painter.setPen(look.text);
  painter.drawText(area.left(), top + titleMetrics.ascent(),
                   titleMetrics.elidedText(title, Qt::ElideRight, area.width()));
  if (detail.isEmpty()) return;
  painter.setFont(look.detailFont);
  painter.setPen(look.secondary);
  painter.drawText(area.left(), top + titleMetrics.height() + kLeading + detailMetrics.ascent(),
                   detailMetrics.elidedText(detail, Qt::ElideRight, area.width()));
}
