#include "app/settings/shortcut_controls.h"

#include <algorithm>

#include "core/ui/hotkey_recorder_view.h"

using namespace Qt::StringLiterals;

QWidget* makeRecorder(AppContext& context, const Tool& tool) {
  const auto nameOf = [&context](const QString& id) {
    const Tool* other = context.registry.tool(id);
    return other ? other->name() : id;
  };
  return new HotkeyRecorderView({context.hotkeys, *context.platform.sounds, nameOf}, tool.id(), tool.name());
}

QString refusalText(const AppContext& context, const QString& toolID) {
  const auto refused = context.hotkeys.refused();
  const auto found = std::ranges::find(refused, toolID, &HotkeyCenter::Refused::toolID);
  if (found == refused.end()) return {};
  return u"%1 is %2. Record another one."_s.arg(found->hotkey.display(), found->refusal.description());
}
