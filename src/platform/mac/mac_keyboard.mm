#import <Carbon/Carbon.h>
#import <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>

#include "platform/mac/mac_api.h"

namespace {

/// What UCKeyTranslate takes are the modifiers of an old event record, one byte above the key.
constexpr uint32_t kModifierShift = 8;
constexpr uint32_t kModifierMask = 0xFF;

constexpr UniCharCount kRoom = 4;

uint16_t translated(const UCKeyboardLayout* layout, uint16_t keyCode, uint32_t modifierState) {
  UInt32 deadKeys = 0;
  UniCharCount length = 0;
  UniChar characters[kRoom] = {};
  const OSStatus status = UCKeyTranslate(layout, keyCode, kUCKeyActionDisplay, modifierState, LMGetKbdType(),
                                         kUCKeyTranslateNoDeadKeysMask, &deadKeys, kRoom, &length, characters);
  return status == noErr && length > 0 ? characters[0] : 0;
}

}  // namespace

namespace mac {

uint16_t characterOnKey(uint32_t keyCode, uint32_t carbonModifiers) {
  if (keyCode > UINT16_MAX) return 0;
  TISInputSourceRef source = TISCopyCurrentKeyboardLayoutInputSource();
  if (!source) return 0;
  const auto data = static_cast<CFDataRef>(TISGetInputSourceProperty(source, kTISPropertyUnicodeKeyLayoutData));
  const UInt8* bytes = data ? CFDataGetBytePtr(data) : nullptr;
  const auto* layout = reinterpret_cast<const UCKeyboardLayout*>(bytes);
  const uint32_t modifiers = (carbonModifiers >> kModifierShift) & kModifierMask;
  const uint16_t character = layout ? translated(layout, static_cast<uint16_t>(keyCode), modifiers) : 0;
  CFRelease(source);
  return character;
}

void* watchLayout(void (*changed)(void* context), void* context) {
  NSNotificationName name = (__bridge NSString*)kTISNotifySelectedKeyboardInputSourceChanged;
  id observer = [NSDistributedNotificationCenter.defaultCenter addObserverForName:name
                                                                           object:nil
                                                                            queue:nil
                                                                       usingBlock:^(NSNotification*) {
                                                                         changed(context);
                                                                       }];
  return (__bridge_retained void*)observer;
}

void stopWatchingLayout(void* watch) {
  id observer = (__bridge_transfer id)watch;
  [NSDistributedNotificationCenter.defaultCenter removeObserver:observer];
}

}  // namespace mac
