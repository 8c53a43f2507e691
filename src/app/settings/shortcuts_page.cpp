#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/settings/pages.h"
#include "app/settings/settings_form.h"
#include "app/settings/shortcut_controls.h"
#include "core/hotkeys/app_shortcuts.h"
#include "core/ui/key_caps.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

/// The recorder, and below it why the combination does not work, when it does not.
QWidget* makeShortcutControl(AppContext& context, const Tool& tool) {
  auto* control = new QWidget;
  auto* column = new QVBoxLayout(control);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2);
  auto* refusal = new QLabel;
  refusal->setFont(Theme::detailFont());
  refusal->setAlignment(Qt::AlignRight);
  column->addWidget(makeRecorder(context, tool));
  column->addWidget(refusal);
  const auto follow = [refusal, &context, id = tool.id()] {
    refusal->setText(refusalText(context, id));
    refusal->setVisible(!refusal->text().isEmpty());
  };
  QObject::connect(&context.hotkeys, &HotkeyCenter::changed, refusal, follow);
  follow();
  return control;
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
  for (const auto& tool : context.registry.tools())
    tools->addRow(tool->name(), {}, makeShortcutControl(context, *tool));
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
