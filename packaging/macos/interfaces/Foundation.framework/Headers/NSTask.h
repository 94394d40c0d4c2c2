#pragma once

#include <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSArray<__covariant ObjectType>;
@class NSDictionary<__covariant KeyType, __covariant ObjectType>;
@class NSError;
@class NSString;
@class NSURL;

typedef NS_ENUM(NSInteger, NSTaskTerminationReason) {
    NSTaskTerminationReasonExit = 1,
    NSTaskTerminationReasonUncaughtSignal = 2,
};

API_AVAILABLE(macos(10.0))
@interface NSTask : NSObject

- (instancetype)init;

@property(nullable, copy) NSURL* executableURL API_AVAILABLE(macos(10.13));
@property(nullable, copy) NSArray<NSString*>* arguments;
@property(nullable, copy) NSDictionary<NSString*, NSString*>* environment;
@property(nullable, retain) id standardInput;
@property(nullable, retain) id standardOutput;
@property(nullable, retain) id standardError;

- (BOOL)launchAndReturnError:(out NSError** _Nullable)error API_AVAILABLE(macos(10.13));
- (void)interrupt;
- (void)terminate;
- (void)waitUntilExit;

@property(readonly) int processIdentifier;
@property(readonly, getter=isRunning) BOOL running;
@property(readonly) int terminationStatus;
@property(readonly) NSTaskTerminationReason terminationReason API_AVAILABLE(macos(10.6));
@property(nullable, copy) void (^terminationHandler)(NSTask*) API_AVAILABLE(macos(10.7));

@property(nullable, copy)
    NSString* launchPath API_DEPRECATED_WITH_REPLACEMENT("executableURL", macos(10.0, 100000));
- (void)launch API_DEPRECATED_WITH_REPLACEMENT("launchAndReturnError:", macos(10.0, 100000));

@end

NS_ASSUME_NONNULL_END
