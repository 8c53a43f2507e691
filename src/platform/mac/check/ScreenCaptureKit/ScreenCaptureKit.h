#pragma once

#include "CoreGraphics/CoreGraphics.h"
#include "Foundation/Foundation.h"

BEGIN_NONNULL

SINCE(12.3)
@interface SCWindow : NSObject
@property(nonatomic, readonly) CGWindowID windowID;
@end

SINCE(12.3)
@interface SCDisplay : NSObject
@property(nonatomic, readonly) CGDirectDisplayID displayID;
@end

SINCE(12.3)
@interface SCShareableContent : NSObject
+ (void)getShareableContentExcludingDesktopWindows:(BOOL)excludeDesktopWindows
                               onScreenWindowsOnly:(BOOL)onScreenWindowsOnly
                                 completionHandler:(void (^)(SCShareableContent* _Nullable shareableContent,
                                                             NSError* _Nullable error))completionHandler;
@property(nonatomic, readonly) NSArray<SCWindow*>* windows;
@property(nonatomic, readonly) NSArray<SCDisplay*>* displays;
@end

SINCE(12.3)
@interface SCContentFilter : NSObject
- (instancetype)initWithDisplay:(SCDisplay*)display excludingWindows:(NSArray<SCWindow*>*)excluded;
@end

SINCE(12.3)
@interface SCStreamConfiguration : NSObject
@property(nonatomic, assign) size_t width;
@property(nonatomic, assign) size_t height;
@property(nonatomic, assign) CGRect sourceRect;
@property(nonatomic, assign) BOOL showsCursor;
@end

SINCE(14.0)
@interface SCScreenshotManager : NSObject
+ (void)captureImageWithFilter:(SCContentFilter*)contentFilter
                 configuration:(SCStreamConfiguration*)config
             completionHandler:
                 (nullable void (^)(CGImageRef _Nullable sampleBuffer, NSError* _Nullable error))completionHandler;
@end

END_NONNULL
