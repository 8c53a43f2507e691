#import <AppKit/AppKit.h>

#include "platform/mac/mac_api.h"

/// Observes the application's appearance, which is the system's unless it is forced.
@interface VantleAppearanceWatch : NSObject
- (instancetype)initWithReport:(void (*)(void* context, bool dark))report context:(void*)context;
- (void)start;
- (void)stop;
@end

@implementation VantleAppearanceWatch {
  void (*_report)(void* context, bool dark);
  void* _context;
}

- (instancetype)initWithReport:(void (*)(void* context, bool dark))report context:(void*)context {
  self = [super init];
  if (!self) return nil;
  _report = report;
  _context = context;
  return self;
}

- (void)start {
  [NSApp addObserver:self forKeyPath:@"effectiveAppearance" options:NSKeyValueObservingOptionInitial context:nullptr];
}

- (void)stop {
  [NSApp removeObserver:self forKeyPath:@"effectiveAppearance"];
}

- (void)observeValueForKeyPath:(NSString*)keyPath
                      ofObject:(id)object
                        change:(NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(void*)context {
  (void)keyPath;
  (void)object;
  (void)change;
  (void)context;
  NSArray<NSAppearanceName>* names = @[ NSAppearanceNameAqua, NSAppearanceNameDarkAqua ];
  NSAppearanceName name = [NSApp.effectiveAppearance bestMatchFromAppearancesWithNames:names];
  _report(_context, [name isEqualToString:NSAppearanceNameDarkAqua]);
}

@end

namespace mac {

void forceDarkAppearance(bool dark) {
  NSApp.appearance = dark ? [NSAppearance appearanceNamed:NSAppearanceNameDarkAqua] : nil;
}

void* watchAppearance(void (*changed)(void* context, bool dark), void* context) {
  VantleAppearanceWatch* watch = [[VantleAppearanceWatch alloc] initWithReport:changed context:context];
  [watch start];
  return (__bridge_retained void*)watch;
}

void stopWatchingAppearance(void* watch) {
  VantleAppearanceWatch* ending = (__bridge_transfer VantleAppearanceWatch*)watch;
  [ending stop];
}

}  // namespace mac
