#pragma once

#include "app/app_context.h"
#include "app/settings/settings_selection.h"

class QWidget;

/// The pages of the settings window, one file each. They follow the stores live.
QWidget* makeGeneralPage(AppContext& context, SettingsSelection& selection);
QWidget* makeToolsPage(AppContext& context, SettingsSelection& selection);
QWidget* makeShortcutsPage(AppContext& context, SettingsSelection& selection);
QWidget* makeNotificationsPage(AppContext& context, SettingsSelection& selection);
QWidget* makeLauncherPage(AppContext& context, SettingsSelection& selection);
QWidget* makePrivacyPage(AppContext& context, SettingsSelection& selection);
