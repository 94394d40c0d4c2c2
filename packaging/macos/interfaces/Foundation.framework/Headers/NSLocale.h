#pragma once

#include <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSArray<__covariant ObjectType>;
@class NSString;

API_AVAILABLE(macos(10.4))
@interface NSLocale : NSObject <NSCopying, NSSecureCoding>

@property(class, readonly, copy) NSArray<NSString*>* preferredLanguages API_AVAILABLE(macos(10.5));

@end

NS_ASSUME_NONNULL_END
