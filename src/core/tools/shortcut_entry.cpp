#include "core/tools/shortcut_entry.h"

#include <algorithm>

#include "core/hotkeys/hotkey_center.h"
#include "core/tools/tool_registry.h"
#include "platform/system_info.h"

using namespace Qt::StringLiterals;

namespace {

/// None when the system gave the combination away.
std::optional<HotkeyCenter::Refused> refusalOf(const HotkeyCenter& hotkeys, const QString& toolID,
                                               const Hotkey& hotkey) {
  const auto refused = hotkeys.refused();
  const auto found = std::ranges::find_if(
      refused, [&](const auto& entry) { return entry.toolID == toolID && entry.hotkey == hotkey; });
  return found == refused.end() ? std::nullopt : std::optional(*found);
}

const AppShortcut* ownShortcut(const Hotkey& hotkey) {
  const auto found = std::ranges::find(kAppShortcuts, hotkey, &AppShortcut::hotkey);
  return found == kAppShortcuts.end() ? nullptr : &*found;
}

QString refusalSentence(const ShortcutSources& sources, const HotkeyCenter::Refused& refused) {
  QString text = u"%1 is %2"_s.arg(refused.hotkey.display(), refused.refusal.description());
  const QString owner = sources.system.shortcutOwnerHint();
  if (refused.refusal.reason == HotkeyRefusal::Reason::taken && !owner.isEmpty()) text += u", perhaps %1"_s.arg(owner);
  return text + u'.';
}

/// Where the desktop hands combinations out, in its own words.
QString triggerSentence(const ShortcutSources& sources, const Hotkey& hotkey) {
  const QString trigger = sources.hotkeys.systemTrigger(hotkey);
  return trigger.isEmpty() ? QString() : u"Your desktop has it as: %1"_s.arg(trigger);
}

ShortcutEntry toolEntry(const ShortcutSources& sources, const Tool& tool) {
  ShortcutEntry entry{.toolID = tool.id(), .name = tool.name(), .icon = tool.icon(), .summary = tool.summary()};
  entry.hotkey = sources.hotkeys.binding(tool.id());
  entry.isOffline = !sources.registry.isUsable(tool);
  if (entry.isOffline) entry.obstacles.append(u"Needs internet — offline right now"_s);
  const bool isEnabled = sources.registry.isEnabled(tool.id());
  if (!isEnabled) entry.obstacles.append(u"Shortcut off"_s);
  const QString obstacle = shortcutObstacle(sources, tool.id());
  if (!obstacle.isEmpty()) entry.obstacles.append(obstacle);
  entry.isBlocked = !isEnabled || (entry.hotkey && refusalOf(sources.hotkeys, tool.id(), *entry.hotkey));
  return entry;
}

ShortcutEntry applicationEntry(const ShortcutSources& sources, const AppShortcut& shortcut) {
  ShortcutEntry entry{.action = shortcut.action,
                      .name = shortcut.name,
                      .icon = shortcut.icon,
                      .summary = shortcut.summary,
                      .hotkey = shortcut.hotkey};
  const QString obstacle = shortcutObstacle(sources, shortcut);
  if (!obstacle.isEmpty()) entry.obstacles.append(obstacle);
  entry.isBlocked = isTakenElsewhere(sources, shortcut);
  return entry;
}

}  // namespace

std::vector<ShortcutEntry> shortcutEntries(const ShortcutSources& sources) {
  std::vector<ShortcutEntry> entries;
  for (const auto& tool : sources.registry.tools()) entries.push_back(toolEntry(sources, *tool));
  for (const AppShortcut& shortcut : kAppShortcuts) entries.push_back(applicationEntry(sources, shortcut));
  return entries;
}

QString shortcutObstacle(const ShortcutSources& sources, const QString& toolID) {
  const auto hotkey = sources.hotkeys.binding(toolID);
  if (!hotkey) return {};
  if (const AppShortcut* own = ownShortcut(*hotkey))
    return u"%1 opens Vantle’s own “%2”, so it never reaches this tool."_s.arg(hotkey->display(), own->name);
  if (const auto other = sources.hotkeys.conflictingToolID(*hotkey, toolID)) {
    const Tool* tool = sources.registry.tool(*other);
    return u"%1 is also the shortcut of %2; only one of the two gets it."_s.arg(hotkey->display(),
                                                                                tool ? tool->name() : *other);
  }
  const auto refused = refusalOf(sources.hotkeys, toolID, *hotkey);
  return refused ? refusalSentence(sources, *refused) : triggerSentence(sources, *hotkey);
}

QString shortcutObstacle(const ShortcutSources& sources, const AppShortcut& shortcut) {
  const auto refused = refusalOf(sources.hotkeys, {}, shortcut.hotkey);
  return refused ? refusalSentence(sources, *refused) : triggerSentence(sources, shortcut.hotkey);
}

bool isTakenElsewhere(const ShortcutSources& sources, const AppShortcut& shortcut) {
  return refusalOf(sources.hotkeys, {}, shortcut.hotkey).has_value();
}

bool isTakenElsewhere(const ShortcutSources& sources, const QString& toolID) {
  const auto hotkey = sources.hotkeys.binding(toolID);
  return hotkey && !ownShortcut(*hotkey) && !sources.hotkeys.conflictingToolID(*hotkey, toolID) &&
         refusalOf(sources.hotkeys, toolID, *hotkey);
}
