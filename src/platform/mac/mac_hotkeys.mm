#import <Carbon/Carbon.h>

#include "platform/mac/mac_api.h"

namespace {

constexpr OSType kSignature = 'BRDL';

/// Runs inside the system's event dispatch: hands the id on and returns. The application target sees the hot keys of
/// every library in the process, so those of others are left to their handlers.
OSStatus hotkeyPressed(EventHandlerCallRef, EventRef event, void* userData) {
  EventHotKeyID hotkey = {0, 0};
  const OSStatus status =
      GetEventParameter(event, kEventParamDirectObject, typeEventHotKeyID, nullptr, sizeof(hotkey), nullptr, &hotkey);
  if (status != noErr || hotkey.signature != kSignature) return eventNotHandledErr;
  const auto* listener = static_cast<const mac::HotkeyListener*>(userData);
  listener->pressed(listener->context, hotkey.id);
  return noErr;
}

}  // namespace

namespace mac {

void* installHotkeyHandler(const HotkeyListener* listener) {
  const EventTypeSpec pressed = {kEventClassKeyboard, kEventHotKeyPressed};
  EventHandlerRef handler = nullptr;
  const OSStatus status = InstallEventHandler(GetApplicationEventTarget(), hotkeyPressed, 1, &pressed,
                                              const_cast<HotkeyListener*>(listener), &handler);
  return status == noErr ? handler : nullptr;
}

void removeHotkeyHandler(void* handler) { RemoveEventHandler(static_cast<EventHandlerRef>(handler)); }

HotkeyResult registerHotkey(uint32_t id, uint32_t keyCode, uint32_t carbonModifiers, void** registration) {
  const EventHotKeyID hotkey = {kSignature, id};
  EventHotKeyRef reference = nullptr;
  const OptionBits noOptions = 0;
  const OSStatus status =
      RegisterEventHotKey(keyCode, carbonModifiers, hotkey, GetApplicationEventTarget(), noOptions, &reference);
  if (status == eventHotKeyExistsErr) return HotkeyResult::taken;
  if (status != noErr || !reference) return HotkeyResult::failed;
  *registration = reference;
  return HotkeyResult::registered;
}

void unregisterHotkey(void* registration) { UnregisterEventHotKey(static_cast<EventHotKeyRef>(registration)); }

}  // namespace mac
