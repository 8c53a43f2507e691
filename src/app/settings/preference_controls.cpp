#include "app/settings/preference_controls.h"

#include "core/ui/toggle_switch.h"

QWidget* makePreferenceSwitch(AppPreferences& preferences, bool Preferences::* flag, const QString& name) {
  auto* control = new ToggleSwitch(name);
  const auto follow = [control, flag, &preferences] { control->setChecked(preferences.value().*flag); };
  follow();
  QObject::connect(&preferences, &StoreBase::changed, control, follow);
  QObject::connect(control, &ToggleSwitch::toggled, control, [flag, &preferences](bool on) {
    preferences.update([flag, on](Preferences& values) { values.*flag = on; });
  });
  return control;
}
