#import <AppKit/AppKit.h>

#include "platform/mac/mac_api.h"

namespace {

NSWindow* windowOf(void* view) { return ((__bridge NSView*)view).window; }

/// Nil for a window that Qt did not create as a panel.
NSPanel* panelOf(void* view) {
  NSWindow* window = windowOf(view);
  return [window isKindOfClass:[NSPanel class]] ? static_cast<NSPanel*>(window) : nil;
}

NSWindowLevel levelOf(mac::Panel kind) {
  switch (kind) {
    case mac::Panel::palette:
      return NSFloatingWindowLevel;
    case mac::Panel::toast:
      return NSStatusWindowLevel;
    case mac::Panel::overlay:
      break;
  }
  return CGShieldingWindowLevel();
}

NSWindowCollectionBehavior behaviorOf(mac::Panel kind) {
  const NSWindowCollectionBehavior everywhere =
      NSWindowCollectionBehaviorCanJoinAllSpaces | NSWindowCollectionBehaviorFullScreenAuxiliary;
  const bool overlay = kind == mac::Panel::overlay;
  return everywhere | (overlay ? NSWindowCollectionBehaviorStationary : NSWindowCollectionBehaviorTransient);
}

}  // namespace

namespace mac {

void styleAsPanel(void* view, Panel kind) {
  NSPanel* panel = panelOf(view);
  // Qt's own bits of the mask must survive; assigning an equal mask would still reset the first responder.
  if (!(panel.styleMask & NSWindowStyleMaskNonactivatingPanel)) {
    panel.styleMask = panel.styleMask | NSWindowStyleMaskNonactivatingPanel;
  }
  panel.floatingPanel = YES;
  panel.level = levelOf(kind);
  panel.collectionBehavior = behaviorOf(kind);
  panel.hidesOnDeactivate = NO;
  panel.becomesKeyOnlyIfNeeded = kind == Panel::toast;
  panel.animationBehavior = NSWindowAnimationBehaviorNone;
  panel.opaque = NO;
  panel.backgroundColor = NSColor.clearColor;
  panel.hasShadow = NO;
  if (kind != Panel::overlay) return;
  // Else clicks pass through where a window is fully transparent, as a selection is.
  panel.ignoresMouseEvents = NO;
  panel.acceptsMouseMovedEvents = YES;
}

void orderFront(void* view, Panel kind) {
  styleAsPanel(view, kind);
  [windowOf(view) orderFrontRegardless];
}

void makeKey(void* view, Panel kind) {
  styleAsPanel(view, kind);
  if (kind == Panel::overlay) [NSApp activateIgnoringOtherApps:YES];
  NSWindow* window = windowOf(view);
  // Qt sees a window as active only when its own view is the first responder, which showing alone does not make it.
  [window makeFirstResponder:(__bridge NSView*)view];
  [window makeKeyAndOrderFront:nil];
}

bool canTakeKeyboard(void* view) { return windowOf(view).canBecomeKeyWindow; }

void* watchResignKey(void* view, void (*resigned)(void* context), void* context) {
  id observer = [NSNotificationCenter.defaultCenter addObserverForName:NSWindowDidResignKeyNotification
                                                                object:windowOf(view)
                                                                 queue:nil
                                                            usingBlock:^(NSNotification*) {
                                                              resigned(context);
                                                            }];
  return (__bridge_retained void*)observer;
}

void stopWatching(void* watch) {
  id observer = (__bridge_transfer id)watch;
  [NSNotificationCenter.defaultCenter removeObserver:observer];
}

bool isPointerPressed() { return NSEvent.pressedMouseButtons != 0; }

void* activeApplication() {
  if (NSApp.active) return nullptr;
  return (__bridge_retained void*)NSWorkspace.sharedWorkspace.frontmostApplication;
}

int32_t activeProcess() {
  // A panel takes the keys without making this the active application.
  if (NSApp.active || NSApp.keyWindow) return 0;
  return NSWorkspace.sharedWorkspace.frontmostApplication.processIdentifier;
}

void bundleOfProcess(int32_t process, void (*take)(void* context, const char* identifier), void* context) {
  NSRunningApplication* application = [NSRunningApplication runningApplicationWithProcessIdentifier:process];
  const char* identifier = application.bundleIdentifier.UTF8String;
  if (identifier) take(context, identifier);
}

// The window server learns that a panel is non-activating when the panel is made, and Qt makes it without: a click into
// the panel may activate the application after all, so what was active before is remembered and made active again.
void returnActivation(void* application) {
  NSRunningApplication* previous = (__bridge NSRunningApplication*)application;
  if (!previous || !NSApp.active) return;
  [NSApp yieldActivationToApplication:previous];
  [previous activateFromApplication:NSRunningApplication.currentApplication options:0];
}

void releaseApplication(void* application) {
  if (application) CFRelease(application);
}

}  // namespace mac
