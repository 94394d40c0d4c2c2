#pragma once

#include <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSDate;

API_AVAILABLE(macos(10.0))
@interface NSRunLoop : NSObject

@property(class, readonly, strong) NSRunLoop* currentRunLoop;
- (void)runUntilDate:(NSDate*)limitDate;

@end

NS_ASSUME_NONNULL_END
