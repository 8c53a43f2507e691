#import <AppKit/AppKit.h>
#import <ApplicationServices/ApplicationServices.h>

#include "platform/mac/mac_api.h"

namespace mac {

bool isAccessibilityTrusted() { return AXIsProcessTrusted(); }

void promptForAccessibility() {
  NSDictionary* options = @{(__bridge NSString*)kAXTrustedCheckOptionPrompt : @YES};
  AXIsProcessTrustedWithOptions((__bridge CFDictionaryRef)options);
}

bool isScreenCaptureAllowed() { return CGPreflightScreenCaptureAccess(); }

void requestScreenCapture() { CGRequestScreenCaptureAccess(); }

bool openPrivacyPage(const char* page) {
  NSString* name = [NSString stringWithUTF8String:page];
  if (!name) return false;
  NSString* address = [@"x-apple.systempreferences:com.apple.preference.security?" stringByAppendingString:name];
  NSURL* url = [NSURL URLWithString:address];
  return url && [NSWorkspace.sharedWorkspace openURL:url];
}

}  // namespace mac
