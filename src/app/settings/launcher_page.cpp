#include "app/settings/arrange_grid.h"
#include "app/settings/confirm_button.h"
#include "app/settings/pages.h"
#include "core/ui/launcher/sort_mode_control.h"
#include "core/ui/settings_form.h"
#include "platform/command_key.h"

using namespace Qt::StringLiterals;

namespace {

SortModeControl* makeSortControl(ToolRegistry& registry) {
  auto* control = new SortModeControl(SortModeControl::Look::labels, nullptr);
  const auto follow = [control, &registry] { control->setMode(registry.sortMode()); };
  follow();
  QObject::connect(&registry, &ToolRegistry::changed, control, follow);
  QObject::connect(control, &SortModeControl::modeChosen, control,
                   [&registry](ToolSortMode mode) { registry.setSortMode(mode); });
  return control;
}

/// Nothing to reset: the button is there, but asleep.
bool isPristine(const AppContext& context) {
  return context.registry.sortMode() == ToolSortMode::manual && context.registry.pinnedToolIDs().isEmpty() &&
         context.settings.value().toolOrder.isEmpty();
}

ConfirmButton* makeResetButton(AppContext& context) {
  auto* button = new ConfirmButton({.button = {u"Reset…"_s, u"Reset the arrangement"_s},
                                    .question = u"Clear pins and order?"_s,
                                    .cancel = {u"Cancel"_s, u"Keep the arrangement"_s},
                                    .confirm = {u"Reset"_s, u"Reset the arrangement now"_s}});
  const auto follow = [button, &context] { button->setEnabled(!isPristine(context)); };
  follow();
  QObject::connect(&context.registry, &ToolRegistry::changed, button, follow);
  QObject::connect(button, &ConfirmButton::confirmed, button, [&context] { context.registry.resetArrangement(); });
  return button;
}

}  // namespace

QWidget* makeLauncherPage(AppContext& context, SettingsSelection&) {
  auto* page = new SettingsPage;
  page->addHeading(u"Order"_s);
  page->addWidget(makeSortControl(context.registry));
  page->addNote(u"How the grid is ordered — pinned tools always come first"_s);
  SettingsSection* grid = page->addSection(u"Arrange your grid"_s);
  grid->addWide(new ArrangeGrid(context));
  page->addNote(
      u"Drag to reorder (switches to Manual). Pinned tools always lead the grid — and the 1–9 keys follow the order."_s);
  page->addNote(
      keyText(u"With the keyboard: ↑↓←→ choose a tool, ⌘←↑↓→ carry it, ⌘P pins it, 1–9 give it that place."_s));
  page->addSection({})->addRow(u"Reset the arrangement"_s, u"No pins, every tool in its first place."_s,
                               makeResetButton(context));
  return page;
}
