#include "core/ui/search_field.h"

#include <QAccessibleWidget>
#include <QPainter>

#include <algorithm>
#include <cmath>

#include "core/ui/icon.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kSymbol = 20;
constexpr int kSide = 2 * Theme::kGrid;
constexpr int kGap = 12;
constexpr int kCaretWidth = 2;
constexpr int kCaretRoom = kCaretWidth + 2;

class AccessibleSearchField final : public QAccessibleWidget {
 public:
  explicit AccessibleSearchField(SearchField* field) : QAccessibleWidget(field, QAccessible::EditableText) {}

  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Value ? static_cast<SearchField*>(widget())->text() : QAccessibleWidget::text(kind);
  }
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.editable = true;
    state.focused = widget()->isVisible();
    return state;
  }
};

QAccessibleInterface* accessibleSearchField(const QString&, QObject* object) {
  auto* field = qobject_cast<SearchField*>(object);
  return field ? new AccessibleSearchField(field) : nullptr;
}

}  // namespace

SearchField::SearchField(const QString& placeholder, QWidget* parent) : QWidget(parent), symbol_(u"magnifyingglass"_s) {
  static const bool installed = (QAccessible::installFactory(accessibleSearchField), true);
  Q_UNUSED(installed)
  setPlaceholder(placeholder);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void SearchField::setText(const QString& text) {
  if (text == text_) return;
  text_ = text;
  update();
  QAccessibleValueChangeEvent event(this, text_);
  QAccessible::updateAccessibility(&event);
}

void SearchField::setPreedit(const QString& preedit) {
  if (preedit == preedit_) return;
  preedit_ = preedit;
  update();
}

void SearchField::setPlaceholder(const QString& placeholder) {
  placeholder_ = placeholder;
  setAccessibleName(placeholder);
  update();
}

void SearchField::setSymbol(const QString& symbol) {
  symbol_ = symbol;
  update();
}

void SearchField::setTrailingText(const QString& text) {
  if (text == trailing_) return;
  trailing_ = text;
  update();
}

QSize SearchField::sizeHint() const { return {40 * Theme::kGrid, kHeight}; }

QRect SearchField::textArea() const {
  const QRect area = rect().adjusted(kSide + kSymbol + kGap, 0, -kSide, 0);
  if (trailing_.isEmpty()) return area;
  return area.adjusted(0, 0, -QFontMetrics(Theme::detailFont()).horizontalAdvance(trailing_) - kSide, 0);
}

QString SearchField::shownText() const {
  return QFontMetricsF(Theme::fieldFont()).elidedText(text_ + preedit_, Qt::ElideLeft, textArea().width() - kCaretRoom);
}

QRect SearchField::caretRect() const {
  const QFontMetricsF metrics(Theme::fieldFont());
  const QString shown = shownText();
  const int height = qRound(metrics.ascent() + 2);
  const int x =
      textArea().left() + (shown.isEmpty() ? 0 : static_cast<int>(std::ceil(metrics.horizontalAdvance(shown))) + 1);
  return {x, (this->height() - height) / 2, kCaretWidth, height};
}

void SearchField::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  const QRectF symbol(kSide, (height() - kSymbol) / 2.0, kSymbol, kSymbol);
  paintSymbol(painter, symbol_, symbol, theme.secondary);
  painter.setFont(Theme::detailFont());
  painter.setPen(theme.secondary);
  painter.drawText(rect().adjusted(0, 0, -kSide, 0), Qt::AlignRight | Qt::AlignVCenter, trailing_);

  painter.setFont(Theme::fieldFont());
  const QFontMetricsF metrics(painter.font());
  const QRect area = textArea();
  const QString shown = shownText();
  const QRect caret = caretRect();
  if (shown.isEmpty()) {
    painter.drawText(area.adjusted(kCaretRoom, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
                     metrics.elidedText(placeholder_, Qt::ElideMiddle, area.width() - kCaretRoom));
  } else {
    painter.setPen(theme.text);
    painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter, shown);
  }
  const double composed = std::min<double>(metrics.horizontalAdvance(preedit_), caret.left() - area.left());
  painter.fillRect(QRectF(caret.left() - composed, caret.bottom() + 1, composed, 1), theme.text);
  painter.fillRect(caret, theme.accent);
}
