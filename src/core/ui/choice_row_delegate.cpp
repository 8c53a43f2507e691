#include "core/ui/choice_row_delegate.h"

#include <QPainter>

#include "core/picker/choice_picker_model.h"
#include "core/ui/icon.h"
#include "core/ui/theme.h"

namespace {

using Model = ChoicePickerModel;

constexpr int kSymbolColumn = 22;
constexpr int kSymbol = 18;
constexpr int kSymbolToText = 12;
constexpr int kDigitColumn = 20;
constexpr int kDescribedHeight = 56;

}  // namespace

QSize ChoiceRowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const bool isDescribed = !index.data(Model::DescriptionRole).toString().isEmpty();
  return isDescribed ? QSize(0, kDescribedHeight) : RowDelegate::sizeHint(option, index);
}

void ChoiceRowDelegate::paintContents(QPainter& painter, const QModelIndex& index, const RowLook& look) const {
  const QRect column(look.area.left(), look.area.top(), kSymbolColumn, look.area.height());
  QRectF symbol(0, 0, kSymbol, kSymbol);
  symbol.moveCenter(QRectF(column).center());
  paintSymbol(painter, index.data(Model::SymbolRole).toString(), symbol, look.secondary);

  RowLook quiet = look;
  quiet.text = look.secondary;
  quiet.detailFont = Theme::calloutFont();
  paintTitleAndDetail(painter, look.area.adjusted(kSymbolColumn + kSymbolToText, 0, -kDigitColumn, 0),
                      index.data(Model::LabelRole).toString(), index.data(Model::DescriptionRole).toString(), quiet);
  painter.setFont(Theme::detailFont());
  painter.setPen(look.secondary);
  painter.drawText(look.area, Qt::AlignRight | Qt::AlignVCenter, QString::number(index.row() + 1));
}
