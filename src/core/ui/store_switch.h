#pragma once

#include "core/settings/store.h"
#include "core/ui/toggle_switch.h"

/// A switch that shows and sets one flag of a store; `name` is for screen readers.
template <class Record>
QWidget* makeStoreSwitch(Store<Record>& store, bool Record::* flag, const QString& name) {
  auto* control = new ToggleSwitch(name);
  const auto follow = [control, flag, &store] { control->setChecked(store.value().*flag); };
  follow();
  QObject::connect(&store, &StoreBase::changed, control, follow);
  QObject::connect(control, &ToggleSwitch::toggled, control,
                   [flag, &store](bool on) { store.update([flag, on](Record& values) { values.*flag = on; }); });
  return control;
}
