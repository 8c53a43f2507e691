#import <Foundation/Foundation.h>
#import <ServiceManagement/ServiceManagement.h>

#include "platform/mac/mac_api.h"

namespace mac {

LoginItem loginItemState() {
  // A program outside of a bundle cannot be registered.
  if (!NSBundle.mainBundle.bundleIdentifier) return LoginItem::unavailable;
  switch (SMAppService.mainAppService.status) {
    case SMAppServiceStatusEnabled:
      return LoginItem::on;
    case SMAppServiceStatusRequiresApproval:
      return LoginItem::awaitsApproval;
    // What was never registered may be "not found" as well.
    case SMAppServiceStatusNotRegistered:
    case SMAppServiceStatusNotFound:
      break;
  }
  return LoginItem::off;
}

bool setLoginItem(bool enabled, void (*refused)(void* context, const char* reason), void* context) {
  SMAppService* service = SMAppService.mainAppService;
  NSError* error = nil;
  const bool done = enabled ? [service registerAndReturnError:&error] : [service unregisterAndReturnError:&error];
  if (!done) {
    const char* reason = error.localizedDescription.UTF8String;
    refused(context, reason ? reason : "the system refused");
  }
  return done;
}

void openLoginItemSettings() { [SMAppService openSystemSettingsLoginItems]; }

}  // namespace mac
