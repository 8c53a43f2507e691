#include "core/ui/control_style.h"

#include <QComboBox>
#include <QPainter>
#include <QStyleOption>
#include <QWidget>

#include <algorithm>

#include "core/ui/combo_row_delegate.h"
#include "core/ui/control_painter.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kControlHeight = 28;
constexpr int kScrollBar = 10;
constexpr int kShortestThumb = 28;
constexpr int kMarkColumn = 24;
constexpr int kCheckBox = 16;
/// Beyond the margin that fields have anyway.
constexpr int kTextInset = 4;

/// Text fields inside spin boxes and combo boxes stand on their owner's ground.
bool hasOwnGround(const QStyleOption& option) {
  const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(&option);
  return frame && frame->lineWidth > 0;
}

/// The window in which a combo box shows its list.
bool isComboList(const QWidget& widget) { return widget.inherits("QComboBoxPrivateContainer"); }

QRect thumbRect(const QStyleOptionSlider& bar) {
  const bool upright = bar.orientation == Qt::Vertical;
  const int room = upright ? bar.rect.height() : bar.rect.width();
  const qint64 range = qint64{bar.maximum} - bar.minimum;
  const auto share = static_cast<int>(room * qint64{bar.pageStep} / std::max<qint64>(1, range + bar.pageStep));
  const int length = std::min(room, std::max(kShortestThumb, share));
  const int position =
      QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition, room - length, bar.upsideDown);
  return upright ? QRect(bar.rect.left(), bar.rect.top() + position, bar.rect.width(), length)
                 : QRect(bar.rect.left() + position, bar.rect.top(), length, bar.rect.height());
}

/// A scroll bar without arrows: all of it is groove.
QRect scrollBarPart(const QStyleOptionSlider& bar, QStyle::SubControl part) {
  const QRect thumb = thumbRect(bar);
  const bool upright = bar.orientation == Qt::Vertical;
  QRect rest = bar.rect;
  switch (part) {
    case QStyle::SC_ScrollBarGroove:
      return bar.rect;
    case QStyle::SC_ScrollBarSlider:
      return thumb;
    case QStyle::SC_ScrollBarSubPage:
      upright ? rest.setBottom(thumb.top() - 1) : rest.setRight(thumb.left() - 1);
      return rest;
    case QStyle::SC_ScrollBarAddPage:
      upright ? rest.setTop(thumb.bottom() + 1) : rest.setLeft(thumb.right() + 1);
      return rest;
    default:
      return {};
  }
}

}  // namespace

ControlStyle::ControlStyle() : QProxyStyle(u"Fusion"_s) {}

void ControlStyle::polish(QWidget* widget) {
  QProxyStyle::polish(widget);
  auto* box = qobject_cast<QComboBox*>(widget);
  if (box && !qobject_cast<ComboRowDelegate*>(box->itemDelegate())) box->setItemDelegate(new ComboRowDelegate(box));
}

void ControlStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const {
  if (!widget) return QProxyStyle::drawPrimitive(element, option, painter, widget);
  const Theme& theme = themeOf(*widget);
  switch (element) {
    case PE_PanelButtonCommand:
      return control::paintButton(*painter, *option, theme);
    case PE_PanelButtonTool:
      return control::paintFlatButton(*painter, *option, theme);
    case PE_IndicatorCheckBox:
      return control::paintCheckBox(*painter, *option, theme);
    case PE_PanelLineEdit:
      if (hasOwnGround(*option)) control::paintField(*painter, *option, theme);
      return;
    case PE_FrameDefaultButton:
      return;
    case PE_Frame:
      if (isComboList(*widget)) return control::paintListFrame(*painter, *option, theme);
      break;
    case PE_FrameFocusRect:
      // Flat buttons have no edge of their own; other buttons, fields and boxes show the focus by theirs.
      if (widget->inherits("QToolButton")) return control::paintFocusRing(*painter, widget->rect(), theme);
      if (widget->inherits("QAbstractButton") || widget->inherits("QComboBox")) return;
      break;
    default:
      break;
  }
  QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void ControlStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                      const QWidget* widget) const {
  if (!widget) return QProxyStyle::drawComplexControl(control, option, painter, widget);
  const Theme& theme = themeOf(*widget);
  const auto part = [&](SubControl which) { return subControlRect(control, option, which, widget); };
  const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
  const auto* box = qstyleoption_cast<const QStyleOptionComboBox*>(option);
  if (control == CC_ScrollBar && slider) {
    control::paintScrollThumb(*painter, part(SC_ScrollBarSlider), *slider, theme);
  } else if (control == CC_ComboBox && box && !box->editable) {
    control::paintButton(*painter, *option, theme);
    control::paintMark(*painter, u"chevron.down", part(SC_ComboBoxArrow), *option, theme);
  } else if (control == CC_SpinBox) {
    control::paintField(*painter, *option, theme);
    control::paintMark(*painter, u"chevron.up", part(SC_SpinBoxUp), *option, theme);
    control::paintMark(*painter, u"chevron.down", part(SC_SpinBoxDown), *option, theme);
  } else {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
  }
}

QRect ControlStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                   const QWidget* widget) const {
  const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (control == CC_ScrollBar && slider) return scrollBarPart(*slider, part);
  const QRect rect = option->rect;
  const QRect marks(rect.right() + 1 - kMarkColumn, rect.top(), kMarkColumn, rect.height());
  if (control == CC_ComboBox && part == SC_ComboBoxArrow) return marks;
  if (control == CC_ComboBox && part == SC_ComboBoxEditField) return rect.adjusted(7, 2, -kMarkColumn, -2);
  if (control == CC_SpinBox) {
    const int half = rect.height() / 2;
    if (part == SC_SpinBoxUp) return marks.adjusted(0, 2, 0, half - rect.height());
    if (part == SC_SpinBoxDown) return marks.adjusted(0, half, 0, -2);
    if (part == SC_SpinBoxEditField) return rect.adjusted(6, 2, -kMarkColumn, -2);
  }
  return QProxyStyle::subControlRect(control, option, part, widget);
}

QRect ControlStyle::subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const {
  const QRect rect = QProxyStyle::subElementRect(element, option, widget);
  return element == SE_LineEditContents && hasOwnGround(*option) ? rect.adjusted(kTextInset, 0, -kTextInset, 0) : rect;
}

QSize ControlStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                     const QWidget* widget) const {
  QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
  const bool isControl = type == CT_PushButton || type == CT_ComboBox || type == CT_LineEdit || type == CT_SpinBox;
  if (isControl) size.setHeight(std::max(option->fontMetrics.height() + 10, kControlHeight));
  const bool isEntry = type == CT_ItemViewItem && widget && widget->inherits("QComboBoxListView");
  if (isEntry) size.setHeight(std::max(size.height(), kControlHeight));
  if (type == CT_PushButton) size.rwidth() += Theme::kGrid;
  if (type == CT_ComboBox || type == CT_SpinBox) size.rwidth() += Theme::kGrid;
  return size;
}

int ControlStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  if (metric == PM_ScrollBarExtent) return kScrollBar;
  if (metric == PM_IndicatorWidth || metric == PM_IndicatorHeight) return kCheckBox;
  // Pressed buttons change their ground; their text stays where it is.
  if (metric == PM_ButtonShiftHorizontal || metric == PM_ButtonShiftVertical) return 0;
  return QProxyStyle::pixelMetric(metric, option, widget);
}

int ControlStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* returned) const {
  // The list of a combo box hangs below it and does not cover it.
  if (hint == SH_ComboBox_Popup) return 0;
  if (hint == SH_ComboBox_PopupFrameStyle) return QFrame::StyledPanel;
  return QProxyStyle::styleHint(hint, option, widget, returned);
}
