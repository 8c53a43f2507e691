#pragma once

#include "CoreFoundation/CoreFoundation.h"
#include "dispatch/dispatch.h"
#include "objc/NSObject.h"

BEGIN_NONNULL

@class NSOperationQueue;

typedef struct {
  NSInteger majorVersion;
  NSInteger minorVersion;
  NSInteger patchVersion;
} NSOperatingSystemVersion;

@protocol NSCopying
@end

@interface NSString : NSObject <NSCopying>
+ (nullable instancetype)stringWithUTF8String:(const char*)nullTerminatedCString;
- (NSString*)stringByAppendingString:(NSString*)aString;
- (BOOL)isEqualToString:(NSString*)aString;
@property(nullable, readonly) const char* UTF8String __attribute__((objc_returns_inner_pointer));
@end

@interface NSURL : NSObject <NSCopying>
+ (nullable instancetype)URLWithString:(NSString*)URLString;
@property(nullable, readonly, copy) NSString* absoluteString;
@property(nullable, readonly, copy) NSURL* filePathURL SINCE(10.6);
@end

@interface NSNumber : NSObject <NSCopying>
+ (NSNumber*)numberWithBool:(BOOL)value;
@property(readonly) unsigned int unsignedIntValue;
@end

@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject <NSCopying>
+ (instancetype)dictionaryWithObjects:(const ObjectType _Nonnull[_Nullable])objects
                              forKeys:(const KeyType<NSCopying> _Nonnull[_Nullable])keys
                                count:(NSUInteger)count;
- (nullable ObjectType)objectForKeyedSubscript:(KeyType)key SINCE(10.8);
@end

typedef struct {
  unsigned long state;
  id __unsafe_unretained _Nullable* _Nullable itemsPtr;
  unsigned long* _Nullable mutationsPtr;
  unsigned long extra[5];
} NSFastEnumerationState;

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)len;
@end

@interface NSArray<__covariant ObjectType> : NSObject <NSCopying, NSFastEnumeration>
+ (instancetype)arrayWithObjects:(const ObjectType _Nonnull[_Nullable])objects count:(NSUInteger)cnt;
@property(nullable, nonatomic, readonly) ObjectType firstObject SINCE(10.6);
@end

@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
+ (instancetype)array;
- (void)addObject:(ObjectType)anObject;
@end

@interface NSIndexSet : NSObject <NSCopying>
- (BOOL)containsIndex:(NSUInteger)value;
@end

@interface NSMutableIndexSet : NSIndexSet
+ (instancetype)indexSet;
- (void)addIndex:(NSUInteger)value;
@end

@interface NSData : NSObject <NSCopying>
+ (instancetype)dataWithBytes:(nullable const void*)bytes length:(NSUInteger)length;
@property(readonly) NSUInteger length;
@property(readonly) const void* bytes __attribute__((objc_returns_inner_pointer));
@end

typedef NSString* NSNotificationName;

@interface NSNotification : NSObject <NSCopying>
@property(readonly, copy) NSNotificationName name;
@end

@interface NSNotificationCenter : NSObject
@property(class, readonly, strong) NSNotificationCenter* defaultCenter;
- (id<NSObject>)addObserverForName:(nullable NSNotificationName)name
                            object:(nullable id)object
                             queue:(nullable NSOperationQueue*)queue
                        usingBlock:(void (^)(NSNotification* notification))block SINCE(10.6);
- (void)removeObserver:(id)observer;
@end

ENUMERATION(NSUInteger, NSNotificationSuspensionBehavior){
    NSNotificationSuspensionBehaviorDrop = 1,
    NSNotificationSuspensionBehaviorCoalesce = 2,
    NSNotificationSuspensionBehaviorHold = 3,
    NSNotificationSuspensionBehaviorDeliverImmediately = 4,
};

@interface NSDistributedNotificationCenter : NSNotificationCenter
+ (NSDistributedNotificationCenter*)defaultCenter;
- (void)addObserver:(id)observer
              selector:(SEL)selector
                  name:(nullable NSNotificationName)name
                object:(nullable NSString*)object
    suspensionBehavior:(NSNotificationSuspensionBehavior)suspensionBehavior;
@end

typedef NSString* NSKeyValueChangeKey;

OPTION_SET(NSUInteger, NSKeyValueObservingOptions){
    NSKeyValueObservingOptionNew = 0x01,
    NSKeyValueObservingOptionOld = 0x02,
    NSKeyValueObservingOptionInitial SINCE(10.5) = 0x04,
    NSKeyValueObservingOptionPrior SINCE(10.5) = 0x08,
};

@interface NSObject (NSKeyValueObserving)
- (void)observeValueForKeyPath:(nullable NSString*)keyPath
                      ofObject:(nullable id)object
                        change:(nullable NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(nullable void*)context;
@end

@interface NSObject (NSKeyValueObserverRegistration)
- (void)addObserver:(NSObject*)observer
         forKeyPath:(NSString*)keyPath
            options:(NSKeyValueObservingOptions)options
            context:(nullable void*)context;
- (void)removeObserver:(NSObject*)observer forKeyPath:(NSString*)keyPath;
@end

@interface NSError : NSObject <NSCopying>
@property(readonly, copy) NSString* localizedDescription;
@end

@interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle* mainBundle;
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@end

@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
@property(copy) NSString* processName;
@property(readonly) NSOperatingSystemVersion operatingSystemVersion SINCE(10.10);
@end

END_NONNULL
