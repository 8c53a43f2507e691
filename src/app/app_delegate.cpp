#include "app/app_delegate.h"

#include <algorithm>

#include "core/hotkeys/hotkey_center.h"
#include "core/net/analytics.h"
#include "core/tools/compositor_bindings.h"
#include "core/tools/tool_registry.h"
#include "platform/permissions.h"
#include "tools/frequent_clis/command_store.h"

void AppDelegate::didFinishLaunching(std::vector<std::unique_ptr<Tool>> tools) {
  effects_.applyAppearance();
  services_.analytics.track(UsageEvent::appLaunched);
  services_.hotkeys.describeBy([this](std::uint32_t keyCode, std::uint32_t carbonModifiers) {
    const auto commands = boundCommands(services_.settings.value());
    const auto found = std::ranges::find(commands, Hotkey{keyCode, carbonModifiers}, &BoundCommand::hotkey);
    return found == commands.end() ? HotkeyPurpose{} : HotkeyPurpose{found->target, found->name};
  });
  services_.registry.bootstrap(std::move(tools));
  for (const AppShortcut& shortcut : kAppShortcuts)
    services_.hotkeys.registerAction(shortcut.hotkey, [this, action = shortcut.action] { effects_.run(action); });
  effects_.announceUpdate();
  const FirstRun window = firstRun(services_.settings.value(), services_.permissions.isAccessibilityTrusted());
  if (window != FirstRun::nothing) effects_.showFirstRun(window);
}

void AppDelegate::willTerminate() { services_.commands.save(); }

AppDelegate::FirstRun AppDelegate::firstRun(const AppSettings& settings, bool isAccessibilityTrusted) {
  if (settings.onboardingCompleted) return isAccessibilityTrusted ? FirstRun::nothing : FirstRun::permissions;
  return settings.onboardingReachedPermissions ? FirstRun::permissions : FirstRun::start;
}
