#pragma once

#include <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSString;

typedef NSString* NSExceptionName;

__attribute__((__objc_exception__)) API_AVAILABLE(macos(10.0)) @interface NSException
    : NSObject<NSCopying, NSSecureCoding>

@property(readonly, copy) NSExceptionName name;
@property(nullable, readonly, copy) NSString* reason;

@end

NS_ASSUME_NONNULL_END
