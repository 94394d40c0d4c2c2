#pragma once

#include <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSArray<__covariant ObjectType>;
@class NSDictionary<__covariant KeyType, __covariant ObjectType>;
@class NSString;

API_AVAILABLE(macos(10.0))
@interface NSProcessInfo : NSObject

@property(class, readonly, strong) NSProcessInfo* processInfo;
@property(readonly, copy) NSDictionary<NSString*, NSString*>* environment;
@property(readonly, copy) NSArray<NSString*>* arguments;
@property(copy) NSString* processName;
@property(readonly) int processIdentifier;

@end

NS_ASSUME_NONNULL_END
