#pragma once

#include <Foundation/NSDate.h>
#include <Foundation/NSObject.h>
#include <Foundation/NSURLRequest.h>

NS_ASSUME_NONNULL_BEGIN

@class NSOperationQueue;
@class NSURLCache;
@class NSURLSessionConfiguration;
@class NSURLSessionDataTask;
@protocol NSURLSessionDelegate;

API_AVAILABLE(macos(10.9))
@interface NSURLSession : NSObject

+ (NSURLSession*)sessionWithConfiguration:(NSURLSessionConfiguration*)configuration
                                 delegate:(nullable id<NSURLSessionDelegate>)delegate
                            delegateQueue:(nullable NSOperationQueue*)queue;

- (void)finishTasksAndInvalidate;

- (NSURLSessionDataTask*)dataTaskWithRequest:(NSURLRequest*)request;

@end

API_AVAILABLE(macos(10.9))
@interface NSURLSessionTask : NSObject <NSCopying>

@property(readonly) NSUInteger taskIdentifier;
@property(nullable, readonly, copy) NSURLRequest* originalRequest;
- (void)cancel;
- (void)suspend;
- (void)resume;

@end

API_AVAILABLE(macos(10.9))
@interface NSURLSessionDataTask : NSURLSessionTask
@end

API_AVAILABLE(macos(10.9))
@interface NSURLSessionConfiguration : NSObject <NSCopying>

@property(class, readonly, strong) NSURLSessionConfiguration* defaultSessionConfiguration;

@property NSURLRequestCachePolicy requestCachePolicy;
@property(nullable, retain) NSURLCache* URLCache;

@end

NS_ASSUME_NONNULL_END
