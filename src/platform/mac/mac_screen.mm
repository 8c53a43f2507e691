#import <AppKit/AppKit.h>
#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include "platform/mac/mac_api.h"

namespace {

/// Called once with a PNG, or with the reason why there is none.
typedef void (^Answer)(NSData* png, const char* failure);

/// The other side knows screens in whole points.
bool isSamePlace(double a, double b) { return a > b - 1 && a < b + 1; }

/// Frames have their y upwards from the bottom of the main screen, which is the first.
NSScreen* screenAt(double x, double y) {
  const double top = CGRectGetMaxY(NSScreen.screens.firstObject.frame);
  for (NSScreen* screen in NSScreen.screens) {
    if (isSamePlace(screen.frame.origin.x, x) && isSamePlace(top - CGRectGetMaxY(screen.frame), y)) return screen;
  }
  return nil;
}

SCDisplay* displayOf(SCShareableContent* content, CGDirectDisplayID number) {
  for (SCDisplay* display in content.displays) {
    if (display.displayID == number) return display;
  }
  return nil;
}

NSArray<SCWindow*>* windowsAmong(SCShareableContent* content, NSIndexSet* numbers) {
  NSMutableArray<SCWindow*>* windows = [NSMutableArray array];
  for (SCWindow* window in content.windows) {
    if ([numbers containsIndex:window.windowID]) [windows addObject:window];
  }
  return windows;
}

SCStreamConfiguration* configuration(const mac::DisplayArea& area) {
  SCStreamConfiguration* configuration = [[SCStreamConfiguration alloc] init];
  configuration.sourceRect = CGRectMake(area.x, area.y, area.width, area.height);
  configuration.width = area.pixelWidth;
  configuration.height = area.pixelHeight;
  configuration.showsCursor = NO;
  return configuration;
}

void fail(Answer answer, NSError* error) {
  const char* reason = error.localizedDescription.UTF8String;
  answer(nil, reason ? reason : "the system gives no picture");
}

void encode(CGImageRef image, Answer answer) {
  NSBitmapImageRep* bitmap = [[NSBitmapImageRep alloc] initWithCGImage:image];
  NSData* png = [bitmap representationUsingType:NSBitmapImageFileTypePNG properties:@{}];
  answer(png, png ? nullptr : "the picture was not encoded");
}

void capture(SCContentFilter* filter, SCStreamConfiguration* configuration, Answer answer) {
  [SCScreenshotManager captureImageWithFilter:filter
                                configuration:configuration
                            completionHandler:^(CGImageRef image, NSError* error) {
                              image ? encode(image, answer) : fail(answer, error);
                            }];
}

}  // namespace

namespace mac {

uint32_t windowNumber(void* view) { return static_cast<uint32_t>(((__bridge NSView*)view).window.windowNumber); }

void captureDisplay(const DisplayArea* area, const uint32_t* excludedWindows, uint32_t count,
                    void (*captured)(void* context, const void* png, long long size, const char* failure),
                    void* context) {
  NSNumber* number = screenAt(area->displayX, area->displayY).deviceDescription[@"NSScreenNumber"];
  NSMutableIndexSet* excluded = [NSMutableIndexSet indexSet];
  for (uint32_t i = 0; i < count; ++i) [excluded addIndex:excludedWindows[i]];
  SCStreamConfiguration* wanted = configuration(*area);
  Answer answer = ^(NSData* png, const char* failure) {
    captured(context, png.bytes, static_cast<long long>(png.length), failure);
  };
  [SCShareableContent getShareableContentExcludingDesktopWindows:NO
                                             onScreenWindowsOnly:NO
                                               completionHandler:^(SCShareableContent* content, NSError* error) {
                                                 if (!content) return fail(answer, error);
                                                 SCDisplay* display =
                                                     number ? displayOf(content, number.unsignedIntValue) : nil;
                                                 if (!display) return answer(nil, "the display is gone");
                                                 SCContentFilter* filter = [[SCContentFilter alloc]
                                                      initWithDisplay:display
                                                     excludingWindows:windowsAmong(content, excluded)];
                                                 capture(filter, wanted, answer);
                                               }];
}

}  // namespace mac
