#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

#include "app/settings/confirm_button.h"
#include "app/settings/pages.h"
#include "app/settings/shortcut_setting_row.h"
#include "core/hotkeys/app_shortcuts.h"
#include "core/tools/shortcut_entry.h"
#include "core/ui/icon_tile_view.h"
#include "core/ui/key_caps.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

QPushButton* makeKeyboardButton(AppContext& context) {
  auto* button = new QPushButton(u"Show Keyboard…"_s);
  button->setAccessibleName(button->text());
  QObject::connect(button, &QPushButton::clicked, button,
                   [&context] { context.windows.openWindow(AppWindow::keyboardShortcuts); });
  return button;
}

/// Name and, where the combination is not as it stands, what is to be known about it.
QWidget* makeOwnTexts(AppContext& context, const AppShortcut& shortcut) {
  auto* texts = new QWidget;
  auto* column = new QVBoxLayout(texts);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2);
  auto* name = new QLabel(shortcut.name);
  name->setFont(Theme::rowFont());
  QLabel* obstacle = makeDetailLabel({});
  column->addWidget(name);
  column->addWidget(obstacle);
  const auto follow = [&context, &shortcut, obstacle] {
    QString text = shortcutObstacle(context.shortcutSources(), shortcut);
    if (isTakenElsewhere(context.shortcutSources(), shortcut)) text += u" The menu leads there too."_s;
    obstacle->setText(text);
    obstacle->setVisible(!text.isEmpty());
  };
  QObject::connect(&context.hotkeys, &HotkeyCenter::changed, obstacle, follow);
  follow();
  return texts;
}

QWidget* makeOwnRow(AppContext& context, const AppShortcut& shortcut) {
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(Theme::kGrid);
  auto* caps = new KeyCaps(shortcut.hotkey.keyCaps());
  caps->setToolTip(shortcut.hotkey.spelled());
  caps->setAccessibleName(u"%1: %2"_s.arg(shortcut.name, shortcut.hotkey.spelled()));
  layout->addWidget(new IconTileView({.symbol = shortcut.icon, .monogram = {}, .color = {}}));
  layout->addWidget(makeOwnTexts(context, shortcut), 1);
  layout->addWidget(caps);
  return row;
}

ConfirmButton* makeResetButton(HotkeyCenter& hotkeys) {
  auto* button = new ConfirmButton({.button = {u"Reset All…"_s, u"Reset all shortcuts"_s},
                                    .question = u"Reset every shortcut?"_s,
                                    .cancel = {u"Cancel"_s, u"Keep all shortcuts"_s},
                                    .confirm = {u"Reset"_s, u"Reset every shortcut now"_s}});
  const auto follow = [button, &hotkeys] {
    button->setEnabled(
        std::ranges::any_of(toolTable(), [&](const ToolInfo& info) { return hotkeys.isRebound(info.id); }));
  };
  follow();
  QObject::connect(&hotkeys, &HotkeyCenter::changed, button, follow);
  QObject::connect(button, &ConfirmButton::confirmed, button, [&hotkeys] { hotkeys.resetAll(); });
  return button;
}

}  // namespace

QWidget* makeShortcutsPage(AppContext& context, SettingsSelection&) {
  auto* page = new SettingsPage;
  page->addSection({})->addRow(u"Keyboard"_s, u"All shortcuts on a drawn keyboard that follows your hands."_s,
                               makeKeyboardButton(context));
  SettingsSection* tools = page->addSection(u"Tools"_s);
  for (const auto& tool : context.registry.tools()) tools->addWide(new ShortcutSettingRow(context, *tool));
  tools->addRow(u"Defaults"_s, u"Gives every tool its first shortcut again."_s, makeResetButton(context.hotkeys));
  SettingsSection* application = page->addSection(u"Vantle itself"_s);
  for (const AppShortcut& shortcut : kAppShortcuts) application->addWide(makeOwnRow(context, shortcut));
  page->addNote(u"These four are always the same; no tool can have them."_s);
  return page;
}
