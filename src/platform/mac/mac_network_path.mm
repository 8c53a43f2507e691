#import <Foundation/Foundation.h>
#import <Network/Network.h>

#include "platform/mac/mac_api.h"

namespace {

NSString* queueLabel() {
  NSString* owner = NSBundle.mainBundle.bundleIdentifier;
  // A binary outside a bundle has no identifier.
  if (!owner) owner = NSProcessInfo.processInfo.processName;
  return [owner stringByAppendingString:@".network-monitor"];
}

}  // namespace

/// A running path monitor with its queue. `stopped` belongs to the queue.
@interface VantlePathMonitor : NSObject
- (instancetype)initWithReport:(void (*)(void* context, bool satisfied))report context:(void*)context;
- (void)stop;
@end

@implementation VantlePathMonitor {
  nw_path_monitor_t _monitor;
  dispatch_queue_t _queue;
  bool _stopped;
}

- (instancetype)initWithReport:(void (*)(void* context, bool satisfied))report context:(void*)context {
  self = [super init];
  if (!self) return nil;
  _queue = dispatch_queue_create(queueLabel().UTF8String, DISPATCH_QUEUE_SERIAL);
  _monitor = nw_path_monitor_create();
  nw_path_monitor_set_queue(_monitor, _queue);
  __weak VantlePathMonitor* weakSelf = self;
  nw_path_monitor_set_update_handler(_monitor, ^(nw_path_t path) {
    VantlePathMonitor* monitor = weakSelf;
    if (monitor && !monitor->_stopped) report(context, nw_path_get_status(path) == nw_path_status_satisfied);
  });
  nw_path_monitor_start(_monitor);
  return self;
}

- (void)stop {
  nw_path_monitor_cancel(_monitor);
  // An update that is already queued comes before this block, and every later one finds the flag set.
  dispatch_sync(_queue, ^{
    self->_stopped = true;
  });
}

@end

namespace mac {

void* startNetworkPath(void (*report)(void* context, bool satisfied), void* context) {
  return (__bridge_retained void*)[[VantlePathMonitor alloc] initWithReport:report context:context];
}

void stopNetworkPath(void* path) {
  VantlePathMonitor* monitor = (__bridge_transfer VantlePathMonitor*)path;
  [monitor stop];
}

}  // namespace mac
