#pragma once

#include <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSString;

API_AVAILABLE(macos(10.0))
@interface NSURL : NSObject <NSSecureCoding, NSCopying>

+ (nullable instancetype)URLWithString:(NSString*)URLString;
+ (NSURL*)fileURLWithPath:(NSString*)path;
- (nullable instancetype)initWithString:(NSString*)URLString;

@property(nullable, readonly, copy) NSString* absoluteString;
@property(nullable, readonly, copy) NSString* scheme;
@property(nullable, readonly, copy) NSString* host;
@property(nullable, readonly, copy) NSString* path;

@end

NS_ASSUME_NONNULL_END
