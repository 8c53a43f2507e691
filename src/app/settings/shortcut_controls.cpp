#include "app/settings/shortcut_controls.h"

#include "core/tools/shortcut_entry.h"
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
  return shortcutObstacle(context.shortcutSources(), toolID);
}
