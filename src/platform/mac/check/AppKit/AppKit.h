#pragma once

#include "ApplicationServices/ApplicationServices.h"
#include "Foundation/Foundation.h"

BEGIN_NONNULL

@class NSWindow;

typedef NSString* NSAppearanceName;
EXTERN const NSAppearanceName NSAppearanceNameAqua SINCE(10.9);
EXTERN const NSAppearanceName NSAppearanceNameDarkAqua SINCE(10.14);

@interface NSAppearance : NSObject
- (nullable NSAppearanceName)bestMatchFromAppearancesWithNames:(NSArray<NSAppearanceName>*)appearances SINCE(10.14);
+ (nullable NSAppearance*)appearanceNamed:(NSAppearanceName)name;
@end

@interface NSColor : NSObject
@property(class, strong, readonly) NSColor* clearColor;
@end

@interface NSResponder : NSObject
@end

@interface NSView : NSResponder
@property(nullable, readonly, unsafe_unretained) NSWindow* window;
@end

typedef CGRect NSRect;
typedef CGSize NSSize;

typedef NSString* NSDeviceDescriptionKey;

@interface NSScreen : NSObject
@property(class, readonly, copy) NSArray<NSScreen*>* screens;
@property(readonly) NSRect frame;
@property(readonly, copy) NSDictionary<NSDeviceDescriptionKey, id>* deviceDescription;
@end

ENUMERATION(NSUInteger, NSBitmapImageFileType){
    NSBitmapImageFileTypeTIFF = 0, NSBitmapImageFileTypeBMP = 1, NSBitmapImageFileTypeGIF = 2,
    NSBitmapImageFileTypeJPEG = 3, NSBitmapImageFileTypePNG = 4,
};

typedef NSString* NSBitmapImageRepPropertyKey;
typedef NSString* NSColorSpaceName;
EXTERN NSColorSpaceName NSDeviceRGBColorSpace;

@interface NSImage : NSObject <NSCopying>
+ (nullable instancetype)imageWithSystemSymbolName:(NSString*)name
                          accessibilityDescription:(nullable NSString*)description SINCE(11.0);
@property NSSize size;
- (void)drawInRect:(NSRect)rect SINCE(10.9);
@end

OPTION_SET(NSUInteger, NSEventModifierFlags){
    NSEventModifierFlagShift SINCE(10.12) = 1 << 17,
    NSEventModifierFlagControl SINCE(10.12) = 1 << 18,
    NSEventModifierFlagOption SINCE(10.12) = 1 << 19,
    NSEventModifierFlagCommand SINCE(10.12) = 1 << 20,
};

OPTION_SET(unsigned long long, NSEventMask){
    NSEventMaskKeyDown SINCE(10.12) = 1ULL << 10,
};

@interface NSEvent : NSObject
@property(readonly) NSEventModifierFlags modifierFlags;
@property(readonly) unsigned short keyCode;
+ (nullable id)addGlobalMonitorForEventsMatchingMask:(NSEventMask)mask
                                             handler:(void (^)(NSEvent* event))block SINCE(10.6);
+ (void)removeMonitor:(id)eventMonitor SINCE(10.6);
@property(class, readonly) NSUInteger pressedMouseButtons SINCE(10.6);
@end

@interface NSImageRep : NSObject <NSCopying>
@end

@interface NSBitmapImageRep : NSImageRep
- (instancetype)initWithCGImage:(CGImageRef)cgImage SINCE(10.5);
- (nullable instancetype)initWithBitmapDataPlanes:(unsigned char* _Nullable* _Nullable)planes
                                       pixelsWide:(NSInteger)width
                                       pixelsHigh:(NSInteger)height
                                    bitsPerSample:(NSInteger)bps
                                  samplesPerPixel:(NSInteger)spp
                                         hasAlpha:(BOOL)alpha
                                         isPlanar:(BOOL)isPlanar
                                   colorSpaceName:(NSColorSpaceName)colorSpaceName
                                      bytesPerRow:(NSInteger)rBytes
                                     bitsPerPixel:(NSInteger)pBits;
- (nullable NSData*)representationUsingType:(NSBitmapImageFileType)storageType
                                 properties:(NSDictionary<NSBitmapImageRepPropertyKey, id>*)properties;
@end

@interface NSGraphicsContext : NSObject
+ (nullable NSGraphicsContext*)graphicsContextWithBitmapImageRep:(NSBitmapImageRep*)bitmapRep;
@property(class, nullable, strong) NSGraphicsContext* currentContext;
+ (void)saveGraphicsState;
+ (void)restoreGraphicsState;
- (void)flushGraphics;
@end

typedef int pid_t;

typedef NSInteger NSWindowLevel;
static const NSWindowLevel NSNormalWindowLevel = 0;
static const NSWindowLevel NSFloatingWindowLevel = 3;
static const NSWindowLevel NSStatusWindowLevel = 25;

OPTION_SET(NSUInteger, NSWindowStyleMask){
    NSWindowStyleMaskBorderless = 0,
    NSWindowStyleMaskTitled = 1 << 0,
    NSWindowStyleMaskUtilityWindow = 1 << 4,
    NSWindowStyleMaskNonactivatingPanel = 1 << 7,
};

OPTION_SET(NSUInteger, NSWindowCollectionBehavior){
    NSWindowCollectionBehaviorDefault = 0,
    NSWindowCollectionBehaviorCanJoinAllSpaces = 1 << 0,
    NSWindowCollectionBehaviorMoveToActiveSpace = 1 << 1,
    NSWindowCollectionBehaviorTransient SINCE(10.6) = 1 << 3,
    NSWindowCollectionBehaviorStationary SINCE(10.6) = 1 << 4,
    NSWindowCollectionBehaviorFullScreenAuxiliary SINCE(10.7) = 1 << 8,
};

ENUMERATION(NSInteger, NSWindowAnimationBehavior){
    NSWindowAnimationBehaviorDefault = 0,
    NSWindowAnimationBehaviorNone = 2,
    NSWindowAnimationBehaviorUtilityWindow = 4,
};

EXTERN NSNotificationName NSWindowDidResignKeyNotification;

@interface NSWindow : NSResponder
@property NSWindowStyleMask styleMask;
@property NSWindowLevel level;
@property NSWindowCollectionBehavior collectionBehavior SINCE(10.5);
@property NSWindowAnimationBehavior animationBehavior SINCE(10.7);
@property BOOL hidesOnDeactivate;
@property BOOL ignoresMouseEvents;
@property BOOL acceptsMouseMovedEvents;
@property(readonly) NSInteger windowNumber;
@property BOOL hasShadow;
@property(getter=isOpaque) BOOL opaque;
@property(null_resettable, copy) NSColor* backgroundColor;
@property(readonly) BOOL canBecomeKeyWindow;
- (BOOL)makeFirstResponder:(nullable NSResponder*)responder;
- (void)makeKeyAndOrderFront:(nullable id)sender;
- (void)orderFrontRegardless;
@end

@interface NSPanel : NSWindow
@property(getter=isFloatingPanel) BOOL floatingPanel;
@property BOOL becomesKeyOnlyIfNeeded;
@end

OPTION_SET(NSUInteger, NSApplicationActivationOptions){
    NSApplicationActivateAllWindows = 1 << 0,
};

@interface NSRunningApplication : NSObject
@property(class, readonly, strong) NSRunningApplication* currentApplication SINCE(10.6);
+ (nullable instancetype)runningApplicationWithProcessIdentifier:(pid_t)pid SINCE(10.6);
@property(readonly) pid_t processIdentifier SINCE(10.6);
@property(nullable, readonly, copy) NSString* bundleIdentifier SINCE(10.6);
- (BOOL)activateFromApplication:(NSRunningApplication*)application
                        options:(NSApplicationActivationOptions)options SINCE(14.0);
@end

@interface NSApplication : NSResponder
@property(getter=isActive, readonly) BOOL active;
@property(nullable, readonly, unsafe_unretained) NSWindow* keyWindow;
@property(nullable, strong) NSAppearance* appearance SINCE(10.14);
@property(readonly, strong) NSAppearance* effectiveAppearance SINCE(10.14);
- (void)activateIgnoringOtherApps:(BOOL)ignoreOtherApps;
- (void)yieldActivationToApplication:(NSRunningApplication*)application SINCE(14.0);
@end

EXTERN __kindof NSApplication* _Null_unspecified NSApp;

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(nullable, readonly, strong) NSRunningApplication* frontmostApplication SINCE(10.7);
@property(readonly) BOOL accessibilityDisplayShouldReduceMotion SINCE(10.12);
- (BOOL)openURL:(NSURL*)url;
@end

typedef NSString* NSPasteboardType;
EXTERN NSPasteboardType const NSPasteboardTypeFileURL SINCE(10.13);

@protocol NSPasteboardWriting <NSObject>
@end

@interface NSPasteboardItem : NSObject <NSPasteboardWriting>
@property(readonly, copy) NSArray<NSPasteboardType>* types;
- (BOOL)setData:(NSData*)data forType:(NSPasteboardType)type;
- (nullable NSData*)dataForType:(NSPasteboardType)type;
- (nullable NSString*)stringForType:(NSPasteboardType)type;
@end

@interface NSPasteboard : NSObject
@property(class, readonly, strong) NSPasteboard* generalPasteboard;
@property(nullable, readonly, copy) NSArray<NSPasteboardItem*>* pasteboardItems SINCE(10.6);
@property(readonly) NSInteger changeCount;
- (NSInteger)clearContents;
- (BOOL)writeObjects:(NSArray<id<NSPasteboardWriting>>*)objects SINCE(10.6);
- (nullable NSData*)dataForType:(NSPasteboardType)dataType;
@end

typedef NSString* NSSoundName;

@interface NSSound : NSObject
+ (nullable NSSound*)soundNamed:(NSSoundName)name;
- (BOOL)play;
- (BOOL)stop;
@end

EXTERN void NSBeep(void);

END_NONNULL
