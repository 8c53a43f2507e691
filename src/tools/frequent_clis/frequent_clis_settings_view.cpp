#include "tools/frequent_clis/frequent_clis_settings_view.h"

#include <QEvent>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

#include "core/ui/icon.h"
#include "core/ui/theme.h"
#include "platform/command_key.h"
#include "tools/frequent_clis/command_list_editor.h"
#include "tools/frequent_clis/command_store.h"
#include "tools/frequent_clis/focused_command.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kIcon = 14;

QLabel* makeNote(const QString& text) {
  auto* note = new QLabel(text);
  note->setFont(Theme::detailFont());
  note->setForegroundRole(QPalette::PlaceholderText);
  note->setWordWrap(true);
  return note;
}

QToolButton* makeButton(const QString& name) {
  auto* button = new QToolButton;
  button->setToolTip(name);
  button->setAccessibleName(name);
  button->setFixedSize(28, 28);
  button->setIconSize({kIcon, kIcon});
  button->setFocusPolicy(Qt::StrongFocus);
  return button;
}

}  // namespace

FrequentCLIsSettingsView::FrequentCLIsSettingsView(CommandStore& store, FocusedCommand& focused, QWidget* parent)
    : QWidget(parent),
      store_(store),
      focused_(focused),
      list_(new CommandListEditor(store)),
      add_(makeButton(u"Add a command"_s)),
      remove_(makeButton(u"Remove the selected command"_s)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins({});
  layout->setSpacing(Theme::kGrid);
  layout->addWidget(makeNote(u"⌃⌥↩ anywhere. ↑↓ to pick, type to filter, ↩ to insert, Esc to dismiss."_s));
  layout->addWidget(list_);
  layout->addWidget(makeFooter());
  layout->addStretch(1);

  connect(add_, &QToolButton::clicked, this, [this] { list_->nameCommand(store_.add()); });
  connect(remove_, &QToolButton::clicked, list_, &CommandListEditor::removeSelected);
  const auto follow = [this] { remove_->setEnabled(list_->selected().has_value()); };
  connect(list_, &CommandListEditor::selectionChanged, this, follow);
  follow();
  connect(&focused_, &FocusedCommand::changed, this, &FrequentCLIsSettingsView::takeFocusedCommand);
  takeFocusedCommand();
}

QWidget* FrequentCLIsSettingsView::makeFooter() {
  auto* footer = new QWidget;
  auto* layout = new QHBoxLayout(footer);
  layout->setContentsMargins({});
  layout->setSpacing(4);
  layout->addWidget(add_, 0, Qt::AlignTop);
  layout->addWidget(remove_, 0, Qt::AlignTop);
  layout->addSpacing(Theme::kGrid);
  layout->addWidget(
      makeNote(keyText(u"⌘E in the palette jumps here with that command focused — drag rows to reorder"_s)), 1);
  paintButtons();
  return footer;
}

void FrequentCLIsSettingsView::paintButtons() {
  const Theme& theme = themeOf(*this);
  const auto drawn = [&](const QString& symbol) {
    QIcon icon(symbolPixmap(symbol, kIcon, theme.text, devicePixelRatioF()));
    icon.addPixmap(symbolPixmap(symbol, kIcon, theme.switchOff, devicePixelRatioF()), QIcon::Disabled);
    return icon;
  };
  add_->setIcon(drawn(u"plus"_s));
  remove_->setIcon(drawn(u"minus"_s));
}

void FrequentCLIsSettingsView::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) paintButtons();
  QWidget::changeEvent(event);
}

void FrequentCLIsSettingsView::takeFocusedCommand() {
  if (const auto id = focused_.take()) list_->focusCommand(*id);
}
