#pragma once

#include <array>

#include "core/presenters/toast_presenter.h"
#include "core/settings/app_preferences.h"
#include "core/tools/tool.h"

/// The tools that are not built yet. Taking an id off this list without building the tool stops the start.
inline constexpr std::array<QLatin1StringView, 0> kPlaceholderToolIDs = {};

/// Stands in for a tool that is not built yet and says so plainly.
class PlaceholderTool final : public Tool {
 public:
  PlaceholderTool(const ToolInfo& info, ToastPresenter& toasts, const AppPreferences& preferences,
                  SettingsViewFactory settingsView);

  void activate() override;

 private:
  ToastPresenter& toasts_;
  const AppPreferences& preferences_;
};
