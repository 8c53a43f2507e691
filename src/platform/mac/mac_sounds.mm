#import <AppKit/AppKit.h>

#include "platform/mac/mac_api.h"

namespace mac {

bool playSound(const char* name) {
  NSString* soundName = [NSString stringWithUTF8String:name];
  NSSound* sound = soundName ? [NSSound soundNamed:soundName] : nil;
  // A sound that still plays would refuse to play again.
  [sound stop];
  return [sound play];
}

void beep() { NSBeep(); }

}  // namespace mac
