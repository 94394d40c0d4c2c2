#pragma once

#include <Foundation/NSDictionary.h>

NS_ASSUME_NONNULL_BEGIN

@class NSString;

typedef NSString* NSAttributedStringKey;

API_AVAILABLE(macos(10.0))
@interface NSAttributedString : NSObject <NSCopying, NSMutableCopying, NSSecureCoding>

- (instancetype)initWithString:(NSString*)str
                    attributes:(nullable NSDictionary<NSAttributedStringKey, id>*)attrs;

@end

NS_ASSUME_NONNULL_END
