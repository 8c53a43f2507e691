#include <QSystemTrayIcon>
#include <QVBoxLayout>

#include <algorithm>

#include "app/onboarding/onboarding_steps.h"
#include "app/settings/icon_row.h"
#include "app/settings/login_item_control.h"
#include "core/hotkeys/app_shortcuts.h"
#include "core/ui/key_caps.h"
#include "core/ui/settings_form.h"

using namespace Qt::StringLiterals;

namespace {

QWidget* makeLoginSection(const Platform& platform) {
  auto* section = new SettingsSection;
  auto* control = new LoginItemControl(*platform.loginItem, *platform.systemInfo);
  control->setRemark(
      section->addRow(u"Open at login"_s, u"Your shortcuts work as soon as you have logged in."_s, control));
  return section;
}

}  // namespace

DoneStep::DoneStep(AppContext& context)
    : OnboardingPage({u"checkmark"_s, {}, {}}, u"You are set"_s,
                     u"Vantle waits in the background until you call it."_s),
      context_(context),
      shortcuts_{makeShortcutRow(AppAction::toggleLauncher, u"square.grid.3x3"_s, u"All tools in one grid."_s),
                 makeShortcutRow(AppAction::openSettings, u"gearshape"_s, u"Shortcuts, tools and everything else."_s)},
      tray_(new IconRow(u"macwindow.on.rectangle"_s, {}, {})) {
  auto* section = new SettingsSection;
  for (const ShortcutRow& shortcut : shortcuts_) section->addWide(shortcut.row);
  section->addWide(tray_);
  column().addWidget(section);
  if (context.platform.loginItem->state() != LoginItem::State::unavailable)
    column().addWidget(makeLoginSection(context.platform));
  column().addStretch(1);
  arrive();
}

DoneStep::ShortcutRow DoneStep::makeShortcutRow(AppAction action, const QString& symbol, const QString& text) {
  const auto shortcut = std::ranges::find(kAppShortcuts, action, &AppShortcut::action);
  auto* row = new IconRow(symbol, shortcut->name, text);
  auto* caps = new KeyCaps(shortcut->hotkey.keyCaps());
  caps->setToolTip(shortcut->hotkey.spelled());
  row->addEnd(caps);
  return {&*shortcut, text, row, caps};
}

/// The desktop may have the combination, or have given another one.
void DoneStep::follow(const ShortcutRow& row) {
  const QString trigger = context_.hotkeys.systemTrigger(row.shortcut->hotkey);
  const bool isLimited = !context_.platform.permissions->shortcutsRemedy().isEmpty();
  row.row->setDetail(trigger.isEmpty() ? row.text : row.text + u" Press %1."_s.arg(trigger));
  row.caps->setVisible(trigger.isEmpty() && !isLimited && !isRefused(context_.hotkeys, row.shortcut->action));
}

// The desktop's bar may have started after this program.
void DoneStep::arrive() {
  for (const ShortcutRow& shortcut : shortcuts_) follow(shortcut);
  const bool hasTray = QSystemTrayIcon::isSystemTrayAvailable();
  tray_->setTitle(hasTray ? u"Vantle's icon"_s : u"No icon on this desktop"_s);
  tray_->setDetail(hasTray
                       ? u"In the %1: click it for tools and settings."_s.arg(context_.platform.systemInfo->iconPlace())
                       : u"It shows none. Starting Vantle once more opens the settings."_s);
}
