#include "core/ui/combo_row_delegate.h"

#include <QPainter>

#include "core/ui/theme.h"

namespace {

constexpr int kHeight = 28;
constexpr int kPadding = 7;
constexpr int kRadius = 5;

}  // namespace

void ComboRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const Theme& theme = themeOf(*option.widget);
  const bool selected = option.state.testFlag(QStyle::State_Selected);
  const QColor idle = option.state.testFlag(QStyle::State_Enabled) ? theme.text : theme.secondary;
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(Qt::NoPen);
  painter->setBrush(selected ? theme.selection : QColor(Qt::transparent));
  painter->drawRoundedRect(option.rect.adjusted(2, 1, -2, -1), kRadius, kRadius);
  painter->setPen(selected ? theme.onAccent : idle);
  painter->setFont(option.font);
  const QRect text = option.rect.adjusted(kPadding, 0, -kPadding, 0);
  painter->drawText(text, Qt::AlignVCenter | Qt::TextSingleLine,
                    option.fontMetrics.elidedText(index.data().toString(), Qt::ElideRight, text.width()));
  painter->restore();
}

QSize ComboRowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  return {option.fontMetrics.horizontalAdvance(index.data().toString()) + 2 * kPadding, kHeight};
}
