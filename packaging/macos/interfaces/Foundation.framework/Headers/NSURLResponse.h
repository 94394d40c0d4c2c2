#pragma once

#include <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSString;
@class NSURL;

API_AVAILABLE(macos(10.2))
@interface NSURLResponse : NSObject <NSSecureCoding, NSCopying>

@property(nullable, readonly, copy) NSURL* URL;
@property(nullable, readonly, copy) NSString* MIMEType;
@property(readonly) long long expectedContentLength;

@end

API_AVAILABLE(macos(10.2))
@interface NSHTTPURLResponse : NSURLResponse

@property(readonly) NSInteger statusCode;

@end

NS_ASSUME_NONNULL_END
