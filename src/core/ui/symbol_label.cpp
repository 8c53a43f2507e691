#include "core/ui/symbol_label.h"

#include <QPainter>

#include "core/ui/icon.h"
#include "core/ui/theme.h"

SymbolLabel::SymbolLabel(const QString& symbol, int size, QWidget* parent)
    : QWidget(parent), symbol_(symbol), tone_(&Theme::accent) {
  setFixedSize(size, size);
}

void SymbolLabel::setSymbol(const QString& symbol, QColor Theme::* tone) {
  symbol_ = symbol;
  tone_ = tone;
  update();
}

void SymbolLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintSymbol(painter, symbol_, rect(), themeOf(*this).*tone_);
}
