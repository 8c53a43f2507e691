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
constexpr int kCaretWidth = 2;

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

void SearchField::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  QRect area = rect().adjusted(kSide, 0, -kSide, 0);
  paintSymbol(painter, symbol_, QRectF(area.left(), (height() - kSymbol) / 2.0, kSymbol, kSymbol), theme.secondary);
  area.setLeft(area.left() + kSymbol + 12);

  painter.setFont(Theme::detailFont());
  painter.setPen(theme.secondary);
  painter.drawText(area, Qt::AlignRight | Qt::AlignVCenter, trailing_);
  if (!trailing_.isEmpty()) area.setRight(area.right() - painter.fontMetrics().horizontalAdvance(trailing_) - kSide);

  painter.setFont(Theme::fieldFont());
  const QFontMetricsF metrics(painter.font());
  // The end of a long query is what is being typed.
  const QString shown = metrics.elidedText(text_, Qt::ElideLeft, area.width() - kCaretWidth - 2);
  painter.setPen(text_.isEmpty() ? theme.secondary : theme.text);
  const QString line = text_.isEmpty() ? metrics.elidedText(placeholder_, Qt::ElideRight, area.width()) : shown;
  painter.drawText(area.adjusted(text_.isEmpty() ? kCaretWidth + 2 : 0, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
                   line);
  const double caretX = area.left() + (text_.isEmpty() ? 0 : std::ceil(metrics.horizontalAdvance(shown)) + 1);
  const double caretHeight = std::round(metrics.ascent() + 2);
  painter.fillRect(QRectF(caretX, std::round((height() - caretHeight) / 2), kCaretWidth, caretHeight), theme.accent);
}
