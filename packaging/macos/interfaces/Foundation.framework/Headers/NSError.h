#pragma once

#include <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSString;
@class NSDictionary<__covariant KeyType, __covariant ObjectType>;

typedef NSString* NSErrorDomain;
typedef NSString* NSErrorUserInfoKey;

FOUNDATION_EXPORT NSErrorDomain const NSCocoaErrorDomain API_AVAILABLE(macos(10.0));
FOUNDATION_EXPORT NSErrorDomain const NSPOSIXErrorDomain API_AVAILABLE(macos(10.0));
FOUNDATION_EXPORT NSErrorDomain const NSOSStatusErrorDomain API_AVAILABLE(macos(10.0));

FOUNDATION_EXPORT NSErrorUserInfoKey const NSLocalizedDescriptionKey API_AVAILABLE(macos(10.0));
FOUNDATION_EXPORT NSErrorUserInfoKey const NSUnderlyingErrorKey API_AVAILABLE(macos(10.0));
FOUNDATION_EXPORT NSErrorUserInfoKey const NSFilePathErrorKey API_AVAILABLE(macos(10.0));

API_AVAILABLE(macos(10.0))
@interface NSError : NSObject <NSCopying, NSSecureCoding>

+ (instancetype)errorWithDomain:(NSErrorDomain)domain
                           code:(NSInteger)code
                       userInfo:(nullable NSDictionary<NSErrorUserInfoKey, id>*)dict;

@property(readonly, copy) NSErrorDomain domain;
@property(readonly) NSInteger code;
@property(readonly, copy) NSDictionary<NSErrorUserInfoKey, id>* userInfo;
@property(readonly, copy) NSString* localizedDescription;
@property(nullable, readonly, copy) NSString* localizedFailureReason API_AVAILABLE(macos(10.4));

@end

NS_ASSUME_NONNULL_END
