#pragma once

#include "CoreFoundation/CoreFoundation.h"

typedef double CGFloat;

typedef struct CGPoint {
  CGFloat x;
  CGFloat y;
} CGPoint;

typedef struct CGSize {
  CGFloat width;
  CGFloat height;
} CGSize;

typedef struct CGRect {
  CGPoint origin;
  CGSize size;
} CGRect;

static inline CGRect CGRectMake(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
  CGRect rect;
  rect.origin.x = x;
  rect.origin.y = y;
  rect.size.width = width;
  rect.size.height = height;
  return rect;
}
EXTERN CGFloat CGRectGetMaxY(CGRect rect);

typedef uint32_t CGDirectDisplayID;
typedef uint32_t CGWindowID;
typedef int32_t CGWindowLevel;
typedef struct CGImage* CGImageRef;

EXTERN CGWindowLevel CGShieldingWindowLevel(void);

typedef uint16_t CGKeyCode;
typedef struct __attribute__((objc_bridge(id))) __CGEvent* CGEventRef;
typedef struct __attribute__((objc_bridge(id))) __CGEventSource* CGEventSourceRef;

ENUMERATION(int32_t, CGEventSourceStateID){
    kCGEventSourceStatePrivate = -1,
    kCGEventSourceStateCombinedSessionState = 0,
    kCGEventSourceStateHIDSystemState = 1,
};

ENUMERATION(uint32_t, CGEventTapLocation){
    kCGHIDEventTap = 0,
    kCGSessionEventTap = 1,
    kCGAnnotatedSessionEventTap = 2,
};

OPTION_SET(uint64_t, CGEventFlags){
    kCGEventFlagMaskAlphaShift = 0x00010000, kCGEventFlagMaskShift = 0x00020000,   kCGEventFlagMaskControl = 0x00040000,
    kCGEventFlagMaskAlternate = 0x00080000,  kCGEventFlagMaskCommand = 0x00100000,
};

EXTERN CGEventSourceRef _Nullable CGEventSourceCreate(CGEventSourceStateID stateID) SINCE(10.4);
EXTERN CGEventRef _Nullable CGEventCreateKeyboardEvent(CGEventSourceRef _Nullable source, CGKeyCode virtualKey,
                                                       bool keyDown) SINCE(10.4);
EXTERN void CGEventKeyboardSetUnicodeString(CGEventRef _Nullable event, UniCharCount stringLength,
                                            const UniChar* _Nullable unicodeString) SINCE(10.4);
EXTERN void CGEventSetFlags(CGEventRef _Nullable event, CGEventFlags flags) SINCE(10.4);
EXTERN void CGEventPost(CGEventTapLocation tap, CGEventRef _Nullable event) SINCE(10.4);

EXTERN CFDictionaryRef _Nullable CGSessionCopyCurrentDictionary(void) SINCE(10.3);

EXTERN bool CGPreflightScreenCaptureAccess(void) SINCE(10.15);
EXTERN bool CGRequestScreenCaptureAccess(void) SINCE(10.15);
