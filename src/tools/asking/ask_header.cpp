#include "tools/asking/ask_header.h"

#include <QHBoxLayout>
#include <QPushButton>

#include "core/ui/settings_form.h"
#include "core/ui/symbol_label.h"
#include "core/ui/theme.h"
#include "core/ui/toned_label.h"
#include "platform/command_key.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kHeight = 48;
constexpr int kSymbol = 20;

}  // namespace

AskHeader::AskHeader(const AskModel& model, const QString& symbol, const QString& title, QWidget* parent)
    : QWidget(parent),
      model_(model),
      copied_(new TonedLabel(&Theme::success, u"✓ Copied"_s)),
      copy_(new QPushButton(u"Copy Answer"_s)),
      new_(new QPushButton(u"New"_s)) {
  setFixedHeight(kHeight);
  copied_->setFont(Theme::detailFont());
  copy_->setToolTip(keyText(u"Copy the latest answer (⌘C)"_s));
  new_->setToolTip(keyText(u"Start over (⌘N)"_s));
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(2 * Theme::kGrid, 0, 2 * Theme::kGrid, 0);
  row->setSpacing(Theme::kGrid);
  row->addWidget(new SymbolLabel(symbol, kSymbol));
  row->addWidget(makeHeading(title), 1);
  for (QWidget* one : std::initializer_list<QWidget*>{copied_, copy_, new_}) row->addWidget(one);
  for (QPushButton* button : {copy_, new_}) button->setFocusPolicy(Qt::TabFocus);
  connect(copy_, &QPushButton::clicked, this, &AskHeader::copyWanted);
  connect(new_, &QPushButton::clicked, this, &AskHeader::newWanted);
  connect(&model_, &AskModel::changed, this, &AskHeader::follow);
  follow();
}

void AskHeader::follow() {
  copied_->setVisible(model_.copied());
  copy_->setVisible(model_.latestAnswer().has_value());
  new_->setVisible(!model_.exchanges().empty() || model_.pending() || model_.errorMessage());
}
