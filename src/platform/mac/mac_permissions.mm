#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>

#include "platform/mac/mac_api.h"

namespace mac {

bool isAccessibilityTrusted() { return AXIsProcessTrusted(); }

void promptForAccessibility() {
  NSDictionary* options = @{(__bridge NSString*)kAXTrustedCheckOptionPrompt : @YES};
  AXIsProcessTrustedWithOptions((__bridge CFDictionaryRef)options);
}

}  // namespace mac
