#import <ApplicationServices/ApplicationServices.h>
#import <Carbon/Carbon.h>

#include "platform/mac/mac_api.h"

namespace {

constexpr uint32_t kLargestKeyCode = UINT16_MAX;

CGEventFlags eventFlags(uint32_t carbonModifiers) {
  CGEventFlags flags = 0;
  if (carbonModifiers & cmdKey) flags |= kCGEventFlagMaskCommand;
  if (carbonModifiers & shiftKey) flags |= kCGEventFlagMaskShift;
  if (carbonModifiers & optionKey) flags |= kCGEventFlagMaskAlternate;
  if (carbonModifiers & controlKey) flags |= kCGEventFlagMaskControl;
  return flags;
}

/// A fresh event bears the modifiers that are held right now; setting the flags keeps them out of what is typed.
void post(CGEventRef event, CGEventFlags flags) {
  CGEventSetFlags(event, flags);
  CGEventPost(kCGSessionEventTap, event);
}

/// Posts a key-down and a key-up, both carrying `text` when there is any. Nothing is posted unless both can be made: a
/// key that goes down and never up would repeat.
bool postPair(void* source, CGKeyCode key, CGEventFlags flags, const UniChar* text, UniCharCount length) {
  const auto eventSource = static_cast<CGEventSourceRef>(source);
  CGEventRef down = CGEventCreateKeyboardEvent(eventSource, key, true);
  CGEventRef up = CGEventCreateKeyboardEvent(eventSource, key, false);
  const bool made = down && up;
  if (made && length > 0) {
    CGEventKeyboardSetUnicodeString(down, length, text);
    CGEventKeyboardSetUnicodeString(up, length, text);
  }
  if (made) {
    post(down, flags);
    post(up, flags);
  }
  if (down) CFRelease(down);
  if (up) CFRelease(up);
  return made;
}

}  // namespace

namespace mac {

void* createKeySource() { return CGEventSourceCreate(kCGEventSourceStateCombinedSessionState); }

void releaseKeySource(void* source) {
  if (source) CFRelease(source);
}

bool typeText(void* source, const uint16_t* text, uint32_t length) {
  // Without a string the event would mean its key, which is "a" for the virtual key 0.
  return length == 0 || postPair(source, 0, 0, text, length);
}

bool pressKey(void* source, uint32_t keyCode, uint32_t carbonModifiers) {
  if (keyCode > kLargestKeyCode) return false;
  return postPair(source, static_cast<CGKeyCode>(keyCode), eventFlags(carbonModifiers), nullptr, 0);
}

bool isSecureInputOn() { return IsSecureEventInputEnabled(); }

}  // namespace mac
