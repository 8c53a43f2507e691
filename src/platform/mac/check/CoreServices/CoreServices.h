#pragma once

#include "CoreFoundation/CoreFoundation.h"

typedef struct UCKeyboardLayout UCKeyboardLayout;

enum { kUCKeyActionDown = 0, kUCKeyActionUp = 1, kUCKeyActionAutoKey = 2, kUCKeyActionDisplay = 3 };
enum { kUCKeyTranslateNoDeadKeysBit = 0 };
enum { kUCKeyTranslateNoDeadKeysMask = 1 << kUCKeyTranslateNoDeadKeysBit };

EXTERN OSStatus UCKeyTranslate(const UCKeyboardLayout* keyLayoutPtr, UInt16 virtualKeyCode, UInt16 keyAction,
                               UInt32 modifierKeyState, UInt32 keyboardType, OptionBits keyTranslateOptions,
                               UInt32* deadKeyState, UniCharCount maxStringLength, UniCharCount* actualStringLength,
                               UniChar unicodeString[]) SINCE(10.0);
