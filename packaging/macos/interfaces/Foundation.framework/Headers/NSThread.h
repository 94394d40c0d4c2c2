#pragma once

#include <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSDate;

API_AVAILABLE(macos(10.0))
@interface NSThread : NSObject

@property(class, readonly) BOOL isMainThread API_AVAILABLE(macos(10.5));
+ (void)sleepUntilDate:(NSDate*)date;

@end

NS_ASSUME_NONNULL_END
