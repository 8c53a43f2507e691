#pragma once

#include "ApplicationServices/ApplicationServices.h"
#include "CoreServices/CoreServices.h"

typedef struct OpaqueEventRef* EventRef;
typedef struct OpaqueEventHandlerRef* EventHandlerRef;
typedef struct OpaqueEventHandlerCallRef* EventHandlerCallRef;
typedef struct OpaqueEventTargetRef* EventTargetRef;
typedef struct OpaqueEventHotKeyRef* EventHotKeyRef;
typedef OSType EventParamName;
typedef OSType EventParamType;

typedef struct EventTypeSpec {
  OSType eventClass;
  UInt32 eventKind;
} EventTypeSpec;

typedef struct EventHotKeyID {
  OSType signature;
  UInt32 id;
} EventHotKeyID;

typedef OSStatus (*EventHandlerProcPtr)(EventHandlerCallRef inHandlerCallRef, EventRef inEvent, void* inUserData);
typedef EventHandlerProcPtr EventHandlerUPP;

enum { eventNotHandledErr = -9874, eventHotKeyExistsErr = -9878, eventHotKeyInvalidErr = -9879 };
enum { kEventClassKeyboard = 'keyb' };
enum { kEventHotKeyPressed = 5, kEventHotKeyReleased = 6 };
enum { kEventParamDirectObject = '----' };
enum { typeEventHotKeyID = 'hkid' };
enum { cmdKey = 1 << 8, shiftKey = 1 << 9, alphaLock = 1 << 10, optionKey = 1 << 11, controlKey = 1 << 12 };

EXTERN EventTargetRef GetApplicationEventTarget(void) SINCE(10.0);
EXTERN OSStatus InstallEventHandler(EventTargetRef inTarget, EventHandlerUPP inHandler, ItemCount inNumTypes,
                                    const EventTypeSpec* inList, void* inUserData, EventHandlerRef* outRef) SINCE(10.0);
EXTERN OSStatus RemoveEventHandler(EventHandlerRef inHandlerRef) SINCE(10.0);
EXTERN OSStatus GetEventParameter(EventRef inEvent, EventParamName inName, EventParamType inDesiredType,
                                  EventParamType* outActualType, ByteCount inBufferSize, ByteCount* outActualSize,
                                  void* outData) SINCE(10.0);
EXTERN OSStatus RegisterEventHotKey(UInt32 inHotKeyCode, UInt32 inHotKeyModifiers, EventHotKeyID inHotKeyID,
                                    EventTargetRef inTarget, OptionBits inOptions, EventHotKeyRef* outRef) SINCE(10.0);
EXTERN OSStatus UnregisterEventHotKey(EventHotKeyRef inHotKey) SINCE(10.0);
EXTERN Boolean IsSecureEventInputEnabled(void) SINCE(10.3);

typedef struct __TISInputSource* TISInputSourceRef;
EXTERN const CFStringRef kTISPropertyUnicodeKeyLayoutData SINCE(10.5);
EXTERN const CFStringRef kTISNotifySelectedKeyboardInputSourceChanged SINCE(10.5);
EXTERN TISInputSourceRef TISCopyCurrentKeyboardLayoutInputSource(void) SINCE(10.5);
EXTERN void* TISGetInputSourceProperty(TISInputSourceRef inputSource, CFStringRef propertyKey) SINCE(10.5);
EXTERN UInt8 LMGetKbdType(void) SINCE(10.0);
