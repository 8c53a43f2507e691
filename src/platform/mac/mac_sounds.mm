#import <AppKit/AppKit.h>

#include "platform/mac/mac_api.h"

namespace mac {

bool playSound(const char* name) {
  NSSound* sound = [NSSound soundNamed:@(name)];
  // A sound that still plays would refuse to play again.
  [sound stop];
  return [sound play];
}

void beep() { NSBeep(); }

}  // namespace mac
