#pragma once

#include <stddef.h>
#include <stdint.h>

#include "declare.h"

typedef unsigned char Boolean;
typedef uint8_t UInt8;
typedef uint16_t UInt16;
typedef int32_t SInt32;
typedef uint32_t UInt32;
typedef UInt16 UniChar;
typedef unsigned long UniCharCount;
typedef unsigned long ByteCount;
typedef unsigned long ItemCount;
typedef UInt32 OptionBits;
typedef UInt32 FourCharCode;
typedef FourCharCode OSType;
typedef SInt32 OSStatus;

enum { noErr = 0 };

typedef const void* CFTypeRef;
typedef const struct __attribute__((objc_bridge(NSString))) __CFString* CFStringRef;
typedef const struct __attribute__((objc_bridge(NSDictionary))) __CFDictionary* CFDictionaryRef;
typedef const struct __attribute__((objc_bridge(NSData))) __CFData* CFDataRef;

EXTERN const UInt8* _Nullable CFDataGetBytePtr(CFDataRef _Nonnull theData);
EXTERN void CFRelease(CFTypeRef _Nonnull reference);
