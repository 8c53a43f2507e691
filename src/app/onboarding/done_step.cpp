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

IconRow* makeShortcutRow(const AppContext& context, AppAction action, const QString& symbol, const QString& detail) {
  const auto shortcut = std::ranges::find(kAppShortcuts, action, &AppShortcut::action);
  auto* row = new IconRow(symbol, shortcut->name, detail);
  if (isRefused(context.hotkeys, action)) return row;
  auto* caps = new KeyCaps(shortcut->hotkey.keyCaps());
  caps->setToolTip(shortcut->hotkey.spelled());
  row->addEnd(caps);
  return row;
}

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
      iconPlace_(context.platform.systemInfo->iconPlace()),
      tray_(new IconRow(u"macwindow.on.rectangle"_s, {}, {})) {
  auto* section = new SettingsSection;
  section->addWide(
      makeShortcutRow(context, AppAction::toggleLauncher, u"square.grid.3x3"_s, u"All tools in one grid."_s));
  section->addWide(
      makeShortcutRow(context, AppAction::openSettings, u"gearshape"_s, u"Shortcuts, tools and everything else."_s));
  section->addWide(tray_);
  column().addWidget(section);
  if (context.platform.loginItem->state() != LoginItem::State::unavailable)
    column().addWidget(makeLoginSection(context.platform));
  column().addStretch(1);
  arrive();
}

// The desktop's bar may have started after this program.
void DoneStep::arrive() {
  const bool hasTray = QSystemTrayIcon::isSystemTrayAvailable();
  tray_->setTitle(hasTray ? u"Vantle's icon"_s : u"No icon on this desktop"_s);
  tray_->setDetail(hasTray ? u"In the %1: click it for tools and settings."_s.arg(iconPlace_)
                           : u"It shows none. Starting Vantle once more opens the settings."_s);
}
