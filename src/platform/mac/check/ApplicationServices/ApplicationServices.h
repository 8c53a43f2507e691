#pragma once

#include "CoreFoundation/CoreFoundation.h"
#include "CoreGraphics/CoreGraphics.h"

EXTERN Boolean AXIsProcessTrusted(void) SINCE(10.4);
EXTERN Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef _Nullable options) SINCE(10.9);
EXTERN CFStringRef _Nonnull kAXTrustedCheckOptionPrompt SINCE(10.9);
