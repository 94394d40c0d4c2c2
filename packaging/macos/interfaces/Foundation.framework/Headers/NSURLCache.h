#pragma once

#include <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

API_AVAILABLE(macos(10.2))
@interface NSURLCache : NSObject

@property(class, strong) NSURLCache* sharedURLCache;

@end

NS_ASSUME_NONNULL_END
