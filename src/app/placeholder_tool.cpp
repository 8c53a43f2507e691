#include "app/placeholder_tool.h"

using namespace Qt::StringLiterals;

PlaceholderTool::PlaceholderTool(const ToolInfo& info, ToastPresenter& toasts, const AppPreferences& preferences,
                                 SettingsViewFactory settingsView)
    : Tool(info, std::move(settingsView)), toasts_(toasts), preferences_(preferences) {}

void PlaceholderTool::activate() {
  ToastContent content;
  content.icon = icon();
  content.title = u"%1 is not built yet"_s.arg(name());
  content.detail = u"Its shortcut and settings are ready; the tool itself comes with a later version."_s;
  toasts_.show(std::move(content), toastDuration(preferences_.value()));
}
