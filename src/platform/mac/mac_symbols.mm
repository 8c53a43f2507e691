#import <AppKit/AppKit.h>

#include "platform/mac/mac_api.h"

namespace {

constexpr NSInteger kBitsPerSample = 8;
constexpr NSInteger kSamples = 4;

NSImage* symbolNamed(const char* name) {
  NSString* symbol = [NSString stringWithUTF8String:name];
  return symbol ? [NSImage imageWithSystemSymbolName:symbol accessibilityDescription:nil] : nil;
}

}  // namespace

namespace mac {

bool symbolSize(const char* name, double* width, double* height) {
  NSImage* image = symbolNamed(name);
  if (!image) return false;
  *width = image.size.width;
  *height = image.size.height;
  return true;
}

bool drawSymbol(const char* name, uint32_t width, uint32_t height, unsigned char* pixels) {
  NSImage* image = symbolNamed(name);
  unsigned char* planes[] = {pixels};
  NSBitmapImageRep* bitmap = [[NSBitmapImageRep alloc] initWithBitmapDataPlanes:planes
                                                                     pixelsWide:width
                                                                     pixelsHigh:height
                                                                  bitsPerSample:kBitsPerSample
                                                                samplesPerPixel:kSamples
                                                                       hasAlpha:YES
                                                                       isPlanar:NO
                                                                 colorSpaceName:NSDeviceRGBColorSpace
                                                                    bytesPerRow:width * kSamples
                                                                   bitsPerPixel:kBitsPerSample * kSamples];
  NSGraphicsContext* context = bitmap ? [NSGraphicsContext graphicsContextWithBitmapImageRep:bitmap] : nil;
  if (!image || !context) return false;
  [NSGraphicsContext saveGraphicsState];
  NSGraphicsContext.currentContext = context;
  [image drawInRect:CGRectMake(0, 0, width, height)];
  [context flushGraphics];
  [NSGraphicsContext restoreGraphicsState];
  return true;
}

}  // namespace mac
