#import <AppKit/AppKit.h>
#import <Carbon/Carbon.h>
#import <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>

#include "platform/mac/mac_api.h"

namespace {

/// What UCKeyTranslate takes are the modifiers of an old event record, one byte above the key.
constexpr uint32_t kModifierShift = 8;
constexpr uint32_t kModifierMask = 0xFF;

constexpr UniCharCount kRoom = 4;

constexpr NSEventModifierFlags kModifiers =
    NSEventModifierFlagShift | NSEventModifierFlagControl | NSEventModifierFlagOption | NSEventModifierFlagCommand;

uint16_t translated(const UCKeyboardLayout* layout, uint16_t keyCode, uint32_t modifierState) {
  UInt32 deadKeys = 0;
  UniCharCount length = 0;
  UniChar characters[kRoom] = {};
  const OSStatus status = UCKeyTranslate(layout, keyCode, kUCKeyActionDisplay, modifierState, LMGetKbdType(),
                                         kUCKeyTranslateNoDeadKeysMask, &deadKeys, kRoom, &length, characters);
  return status == noErr && length > 0 ? characters[0] : 0;
}

}  // namespace

/// Hears from the system that another layout was chosen.
@interface VantleLayoutWatch : NSObject
- (instancetype)initWithReport:(void (*)(void* context))report context:(void*)context;
- (void)layoutChanged:(NSNotification*)notification;
@end

@implementation VantleLayoutWatch {
  void (*_report)(void* context);
  void* _context;
}

- (instancetype)initWithReport:(void (*)(void* context))report context:(void*)context {
  self = [super init];
  if (!self) return nil;
  _report = report;
  _context = context;
  return self;
}

- (void)layoutChanged:(NSNotification*)notification {
  (void)notification;
  _report(_context);
}

@end

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
  VantleLayoutWatch* watch = [[VantleLayoutWatch alloc] initWithReport:changed context:context];
  // Else news waits until this is the active application, which it hardly ever is.
  [NSDistributedNotificationCenter.defaultCenter
             addObserver:watch
                selector:@selector(layoutChanged:)
                    name:(__bridge NSString*)kTISNotifySelectedKeyboardInputSourceChanged
                  object:nil
      suspensionBehavior:NSNotificationSuspensionBehaviorDeliverImmediately];
  return (__bridge_retained void*)watch;
}

void stopWatchingLayout(void* watch) {
  VantleLayoutWatch* ending = (__bridge_transfer VantleLayoutWatch*)watch;
  [NSDistributedNotificationCenter.defaultCenter removeObserver:ending];
}

void* watchKey(uint32_t keyCode, void (*pressed)(void* context), void* context) {
  id watch = [NSEvent addGlobalMonitorForEventsMatchingMask:NSEventMaskKeyDown
                                                    handler:^(NSEvent* event) {
                                                      const bool isAlone = (event.modifierFlags & kModifiers) == 0;
                                                      if (event.keyCode == keyCode && isAlone) pressed(context);
                                                    }];
  return (__bridge_retained void*)watch;
}

void stopWatchingKey(void* watch) {
  id ending = (__bridge_transfer id)watch;
  [NSEvent removeMonitor:ending];
}

}  // namespace mac
