#pragma once

#include <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

API_AVAILABLE(macos(10.0))
@interface NSBezierPath : NSObject <NSCopying, NSSecureCoding>

+ (NSBezierPath*)bezierPathWithRoundedRect:(NSRect)rect
                                   xRadius:(CGFloat)xRadius
                                   yRadius:(CGFloat)yRadius API_AVAILABLE(macos(10.5));
- (void)stroke;
- (void)addClip;

@end

NS_ASSUME_NONNULL_END
