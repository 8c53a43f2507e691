#import <AppKit/AppKit.h>

#include "platform/mac/mac_api.h"

namespace mac {

Version systemVersion() {
  const NSOperatingSystemVersion version = NSProcessInfo.processInfo.operatingSystemVersion;
  return {static_cast<int32_t>(version.majorVersion), static_cast<int32_t>(version.minorVersion),
          static_cast<int32_t>(version.patchVersion)};
}

bool hasWindowServer() {
  CFDictionaryRef session = CGSessionCopyCurrentDictionary();
  if (session) CFRelease(session);
  return session != nullptr;
}

bool isMotionReduced() { return NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion; }

// The newer -activate waits for the active application to yield, which no other application does for a shortcut of
// ours.
void activate() { [NSApp activateIgnoringOtherApps:YES]; }

}  // namespace mac
