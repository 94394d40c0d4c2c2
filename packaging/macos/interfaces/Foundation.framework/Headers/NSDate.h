#pragma once

#include <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

typedef double NSTimeInterval;

API_AVAILABLE(macos(10.0))
@interface NSDate : NSObject <NSCopying, NSSecureCoding>

@property(readonly) NSTimeInterval timeIntervalSinceReferenceDate;
+ (instancetype)date;
+ (instancetype)dateWithTimeIntervalSinceNow:(NSTimeInterval)secs;

@end

NS_ASSUME_NONNULL_END
