#pragma once

#include "Foundation/Foundation.h"

BEGIN_NONNULL

typedef ENUMERATION(NSInteger, SMAppServiceStatus){
    SMAppServiceStatusNotRegistered,
    SMAppServiceStatusEnabled,
    SMAppServiceStatusRequiresApproval,
    SMAppServiceStatusNotFound,
} SMAppServiceStatus;

SINCE(13.0)
@interface SMAppService : NSObject
@property(class, readonly) SMAppService* mainAppService;
@property(readonly) SMAppServiceStatus status;
- (BOOL)registerAndReturnError:(NSError* _Nullable __autoreleasing* _Nullable)error;
- (BOOL)unregisterAndReturnError:(NSError* _Nullable __autoreleasing* _Nullable)error;
+ (void)openSystemSettingsLoginItems;
@end

END_NONNULL
