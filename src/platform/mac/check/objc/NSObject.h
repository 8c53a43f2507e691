#pragma once

#include "objc/objc.h"

BEGIN_NONNULL

@protocol NSObject
- (BOOL)isKindOfClass:(Class)aClass;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
+ (Class)class;
- (instancetype)init;
@end

END_NONNULL
