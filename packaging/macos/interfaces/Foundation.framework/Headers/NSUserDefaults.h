#pragma once

#include <Foundation/NSDictionary.h>

NS_ASSUME_NONNULL_BEGIN

@class NSString;

API_AVAILABLE(macos(10.0))
@interface NSUserDefaults : NSObject

@property(class, readonly, strong) NSUserDefaults* standardUserDefaults;
- (void)registerDefaults:(NSDictionary<NSString*, id>*)registrationDictionary;

@end

NS_ASSUME_NONNULL_END
