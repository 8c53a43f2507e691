#include <QLabel>
#include <QPushButton>

#include "app/settings/pages.h"
#include "app/settings/settings_form.h"
#include "app/settings/shortcut_controls.h"
#include "core/hotkeys/app_shortcuts.h"
#include "core/ui/key_caps.h"

using namespace Qt::StringLiterals;

namespace {

/// One tool's row: the recorder, and below the name why its combination does not work, when it does not.
void addToolRow(SettingsSection& section, AppContext& context, const Tool& tool) {
  section.addRow(tool.name(), {}, makeRecorder(context, tool));
  QLabel* refusal = makeDetailLabel({});
  section.addWide(refusal);
  const auto follow = [refusal, &context, id = tool.id()] {
    refusal->setText(refusalText(context, id));
    refusal->parentWidget()->updateGeometry();
    refusal->setVisible(!refusal->text().isEmpty());
  };
  QObject::connect(&context.hotkeys, &HotkeyCenter::changed, refusal, follow);
  follow();
}

QPushButton* makeResetButton(AppContext& context) {
  auto* button = new QPushButton(u"Reset All"_s);
  QObject::connect(button, &QPushButton::clicked, button, [&context] {
    for (const auto& tool : context.registry.tools()) context.hotkeys.resetHotkey(tool->id());
  });
  return button;
}

}  // namespace

QWidget* makeShortcutsPage(AppContext& context, SettingsSelection&) {
  auto* page = new SettingsPage;
  SettingsSection* tools = page->addSection(u"Tools"_s);
  for (const auto& tool : context.registry.tools()) addToolRow(*tools, context, *tool);
  QPushButton* reset = makeResetButton(context);
  tools->addRow(u"Defaults"_s, u"Gives every tool its first shortcut again."_s, reset);
  reset->setAccessibleName(reset->text());
  SettingsSection* application = page->addSection(u"Vantle itself"_s);
  for (const AppShortcut& shortcut : kAppShortcuts) {
    auto* caps = new KeyCaps(shortcut.hotkey.keyCaps());
    caps->setToolTip(shortcut.hotkey.spelled());
    application->addRow(shortcut.name, {}, caps);
  }
  return page;
}
