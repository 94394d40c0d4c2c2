#pragma once

#include <Foundation/NSObject.h>
#include <dispatch/dispatch.h>

NS_ASSUME_NONNULL_BEGIN

@class NSString;

API_AVAILABLE(macos(10.5))
@interface NSOperationQueue : NSObject

- (void)addOperationWithBlock:(void (^)(void))block API_AVAILABLE(macos(10.6));
@property NSInteger maxConcurrentOperationCount;
@property(nullable, copy) NSString* name API_AVAILABLE(macos(10.6));

@end

NS_ASSUME_NONNULL_END
