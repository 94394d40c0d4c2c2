#pragma once

#include <Foundation/NSDate.h>
#include <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSData;
@class NSString;
@class NSURL;

typedef NS_ENUM(NSUInteger, NSURLRequestCachePolicy) {
    NSURLRequestUseProtocolCachePolicy = 0,
    NSURLRequestReloadIgnoringLocalCacheData = 1,
    NSURLRequestReloadIgnoringLocalAndRemoteCacheData = 4,
    NSURLRequestReloadIgnoringCacheData = NSURLRequestReloadIgnoringLocalCacheData,
    NSURLRequestReturnCacheDataElseLoad = 2,
    NSURLRequestReturnCacheDataDontLoad = 3,
    NSURLRequestReloadRevalidatingCacheData = 5,
};

API_AVAILABLE(macos(10.2))
@interface NSURLRequest : NSObject <NSSecureCoding, NSCopying, NSMutableCopying>

+ (instancetype)requestWithURL:(NSURL*)URL;
- (instancetype)initWithURL:(NSURL*)URL
                cachePolicy:(NSURLRequestCachePolicy)cachePolicy
            timeoutInterval:(NSTimeInterval)timeoutInterval;

@property(nullable, readonly, copy) NSURL* URL;
@property(readonly) NSURLRequestCachePolicy cachePolicy;
@property(readonly) NSTimeInterval timeoutInterval;
@property(nullable, readonly, copy) NSString* HTTPMethod;
@property(nullable, readonly, copy) NSData* HTTPBody;

@end

API_AVAILABLE(macos(10.2))
@interface NSMutableURLRequest : NSURLRequest

@property(nullable, copy) NSURL* URL;
@property NSURLRequestCachePolicy cachePolicy;
@property NSTimeInterval timeoutInterval;
@property(copy) NSString* HTTPMethod;
@property(nullable, copy) NSData* HTTPBody;
- (void)setValue:(nullable NSString*)value forHTTPHeaderField:(NSString*)field;
- (void)addValue:(NSString*)value forHTTPHeaderField:(NSString*)field;

@end

NS_ASSUME_NONNULL_END
