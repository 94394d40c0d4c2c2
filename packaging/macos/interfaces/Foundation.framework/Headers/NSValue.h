#pragma once

#include <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSString;

API_AVAILABLE(macos(10.0))
@interface NSValue : NSObject <NSCopying, NSSecureCoding>
@end

API_AVAILABLE(macos(10.0))
@interface NSNumber : NSValue

@property(readonly) int intValue;
@property(readonly) long long longLongValue;
@property(readonly) double doubleValue;
@property(readonly) BOOL boolValue;
@property(readonly) NSInteger integerValue API_AVAILABLE(macos(10.5));
@property(readonly) NSUInteger unsignedIntegerValue API_AVAILABLE(macos(10.5));
@property(readonly, copy) NSString* stringValue;

+ (NSNumber*)numberWithInt:(int)value;
+ (NSNumber*)numberWithLongLong:(long long)value;
+ (NSNumber*)numberWithDouble:(double)value;
+ (NSNumber*)numberWithBool:(BOOL)value;
+ (NSNumber*)numberWithInteger:(NSInteger)value API_AVAILABLE(macos(10.5));
+ (NSNumber*)numberWithUnsignedInteger:(NSUInteger)value API_AVAILABLE(macos(10.5));

@end

NS_ASSUME_NONNULL_END
