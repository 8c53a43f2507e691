#import <AppKit/AppKit.h>

#include "platform/mac/mac_api.h"

namespace mac {

void readPasteboard(const char* type, void (*take)(void* context, const void* bytes, unsigned long length),
                    void* context) {
  NSData* data = [NSPasteboard.generalPasteboard dataForType:@(type)];
  if (data.length > 0) take(context, data.bytes, data.length);
}

void readPasteboardFiles(void (*take)(void* context, const char* url), void* context) {
  for (NSPasteboardItem* item in NSPasteboard.generalPasteboard.pasteboardItems) {
    NSString* text = [item stringForType:NSPasteboardTypeFileURL];
    if (!text) continue;
    // What is copied may name the file by its number.
    const char* url = [NSURL URLWithString:text].filePathURL.absoluteString.UTF8String;
    if (url) take(context, url);
  }
}

}  // namespace mac
