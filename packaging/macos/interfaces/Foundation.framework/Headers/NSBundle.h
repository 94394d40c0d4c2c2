#pragma once

#include <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSDictionary<__covariant KeyType, __covariant ObjectType>;
@class NSString;

API_AVAILABLE(macos(10.0))
@interface NSBundle : NSObject

@property(class, readonly, strong) NSBundle* mainBundle;
@property(readonly, copy) NSString* bundlePath;
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@property(nullable, readonly, copy) NSDictionary<NSString*, id>* infoDictionary;
- (nullable id)objectForInfoDictionaryKey:(NSString*)key API_AVAILABLE(macos(10.2));

@end

NS_ASSUME_NONNULL_END
