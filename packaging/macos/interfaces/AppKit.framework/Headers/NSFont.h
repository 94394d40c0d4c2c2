#pragma once

#include <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

API_AVAILABLE(macos(10.0))
@interface NSFont : NSObject <NSCopying, NSSecureCoding>

+ (NSFont*)systemFontOfSize:(CGFloat)fontSize;
@property(class, readonly) CGFloat systemFontSize;

@end

NS_ASSUME_NONNULL_END
