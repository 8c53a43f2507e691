#pragma once

#include "objc/NSObject.h"

// In Objective-C the queues are objects that ARC counts.
@protocol OS_dispatch_queue <NSObject>
@end
@protocol OS_dispatch_queue_attr <NSObject>
@end
typedef NSObject<OS_dispatch_queue>* dispatch_queue_t;
typedef NSObject<OS_dispatch_queue_attr>* dispatch_queue_attr_t;
typedef void (^dispatch_block_t)(void);

#define DISPATCH_QUEUE_SERIAL NULL

EXTERN dispatch_queue_t _Nonnull dispatch_queue_create(const char* _Nullable label,
                                                       dispatch_queue_attr_t _Nullable attributes)
    __attribute__((ns_returns_retained)) SINCE(10.6);
EXTERN void dispatch_sync(dispatch_queue_t _Nonnull queue, __attribute__((noescape)) dispatch_block_t _Nonnull block)
    SINCE(10.6);
