#include "core/hotkeys/hotkey_recorder_model.h"

#include "core/hotkeys/hotkey_center.h"
#include "core/hotkeys/key_press.h"
#include "platform/sounds.h"

using namespace Qt::StringLiterals;

HotkeyRecorderModel::HotkeyRecorderModel(Services services, QString toolID)
    : services_(std::move(services)), toolID_(std::move(toolID)) {
  connect(&services_.hotkeys, &HotkeyCenter::changed, this, &HotkeyRecorderModel::changed);
}

HotkeyRecorderModel::~HotkeyRecorderModel() {
  if (recording_) services_.hotkeys.resumeAll();
}

bool HotkeyRecorderModel::hasBinding() const { return services_.hotkeys.binding(toolID_).has_value(); }

QString HotkeyRecorderModel::text() const {
  if (recording_) return u"Press shortcut…"_s;
  const auto binding = services_.hotkeys.binding(toolID_);
  return binding ? binding->display() : u"Record Shortcut"_s;
}

void HotkeyRecorderModel::start() {
  if (recording_) return;
  recording_ = true;
  hint_.clear();
  services_.hotkeys.pauseAll();
  Q_EMIT changed();
}

void HotkeyRecorderModel::cancel() {
  if (!recording_) return;
  recording_ = false;
  hint_.clear();
  // Tells everyone by its own signal, this model included.
  services_.hotkeys.resumeAll();
}

void HotkeyRecorderModel::clear() { services_.hotkeys.setHotkey(std::nullopt, toolID_); }

void HotkeyRecorderModel::record(const Hotkey& pressed) {
  if (!recording_) return;
  if (pressed.keyCode == keycode::kEscape) {
    cancel();
    return;
  }
  if (pressed.carbonModifiers == 0 && !pressed.isFunctionKey()) {
    refuse(u"Add a modifier (⌃⌥⇧⌘)"_s);
    return;
  }
  if (const auto other = services_.hotkeys.conflictingToolID(pressed, toolID_)) {
    refuse(u"Already used by "_s + services_.toolName(*other));
    services_.sounds.beep();
    return;
  }
  services_.hotkeys.setHotkey(pressed, toolID_);
  cancel();
}

void HotkeyRecorderModel::refuse(const QString& hint) {
  hint_ = hint;
  Q_EMIT changed();
}
