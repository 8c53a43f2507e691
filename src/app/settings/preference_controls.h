#pragma once

#include "core/settings/app_preferences.h"

class QString;
class QWidget;

/// A switch that shows and sets one flag of the preferences; `name` is for screen readers.
QWidget* makePreferenceSwitch(AppPreferences& preferences, bool Preferences::* flag, const QString& name);
