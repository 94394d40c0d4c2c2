#pragma once

#include <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSArray<__covariant ObjectType>;
@class NSDictionary<__covariant KeyType, __covariant ObjectType>;
@class NSString;

typedef NS_OPTIONS(uint64_t, NSActivityOptions) {
    NSActivityIdleSystemSleepDisabled = 1ULL << 20,
    NSActivitySuddenTerminationDisabled = 1ULL << 14,
    NSActivityAutomaticTerminationDisabled = 1ULL << 15,
    NSActivityUserInitiated = 0x00FFFFFFULL | NSActivityIdleSystemSleepDisabled,
} API_AVAILABLE(macos(10.9));

API_AVAILABLE(macos(10.0))
@interface NSProcessInfo : NSObject

@property(class, readonly, strong) NSProcessInfo* processInfo;
@property(readonly, copy) NSDictionary<NSString*, NSString*>* environment;
@property(readonly, copy) NSArray<NSString*>* arguments;
@property(copy) NSString* processName;
@property(readonly) int processIdentifier;

- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options
                                  reason:(NSString*)reason API_AVAILABLE(macos(10.9));

@end

NS_ASSUME_NONNULL_END
