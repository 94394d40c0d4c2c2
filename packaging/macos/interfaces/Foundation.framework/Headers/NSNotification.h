#pragma once

#include <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSString;

typedef NSString* NSNotificationName;

API_AVAILABLE(macos(10.0))
@interface NSNotification : NSObject <NSCopying, NSCoding>

@property(readonly, copy) NSNotificationName name;
@property(nullable, readonly, retain) id object;

@end

NS_ASSUME_NONNULL_END
