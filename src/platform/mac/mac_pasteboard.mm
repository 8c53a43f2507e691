#import <AppKit/AppKit.h>

#include "platform/mac/mac_api.h"

namespace mac {

void readPasteboard(const char* type, void (*take)(void* context, const void* bytes, unsigned long length),
                    void* context) {
  NSString* name = [NSString stringWithUTF8String:type];
  NSData* data = name ? [NSPasteboard.generalPasteboard dataForType:name] : nil;
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

long long pasteboardChangeCount() { return NSPasteboard.generalPasteboard.changeCount; }

void readPasteboardPieces(void (*take)(void* context, const PasteboardPiece* piece), void* context) {
  uint32_t number = 0;
  for (NSPasteboardItem* item in NSPasteboard.generalPasteboard.pasteboardItems) {
    for (NSPasteboardType type in item.types) {
      NSData* data = [item dataForType:type];
      const char* name = type.UTF8String;
      if (!data || !name) continue;
      const PasteboardPiece piece = {number, name, data.bytes, data.length};
      take(context, &piece);
    }
    ++number;
  }
}

bool writePasteboardPieces(const PasteboardPiece* pieces, uint32_t count) {
  NSMutableArray<NSPasteboardItem*>* items = [NSMutableArray array];
  NSPasteboardItem* item = nil;
  for (uint32_t index = 0; index < count; ++index) {
    if (index == 0 || pieces[index].item != pieces[index - 1].item) {
      item = [[NSPasteboardItem alloc] init];
      [items addObject:item];
    }
    NSString* type = [NSString stringWithUTF8String:pieces[index].type];
    NSData* data = [NSData dataWithBytes:pieces[index].bytes length:pieces[index].length];
    if (type) [item setData:data forType:type];
  }
  NSPasteboard* pasteboard = NSPasteboard.generalPasteboard;
  [pasteboard clearContents];
  return count == 0 || [pasteboard writeObjects:items];
}

}  // namespace mac
