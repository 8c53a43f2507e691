#include "core/ui/panel_header.h"

#include <QHBoxLayout>

#include "core/ui/settings_form.h"
#include "core/ui/symbol_label.h"
#include "core/ui/theme.h"

namespace {

constexpr int kHeight = 52;
constexpr int kSymbol = 20;

}  // namespace

QWidget* makePanelHeader(const QString& symbol, const QString& text) {
  auto* header = new QWidget;
  header->setFixedHeight(kHeight);
  auto* row = new QHBoxLayout(header);
  row->setContentsMargins(2 * Theme::kGrid, 0, 2 * Theme::kGrid, 0);
  row->setSpacing(Theme::kGrid + Theme::kGrid / 2);
  row->addWidget(new SymbolLabel(symbol, kSymbol));
  row->addWidget(makeHeading(text), 1);
  return header;
}
