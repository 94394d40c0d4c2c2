#pragma once

#include <CoreGraphics/CoreGraphics.h>
#include <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

API_AVAILABLE(macos(10.0))
@interface NSColor : NSObject <NSCopying, NSSecureCoding>

+ (NSColor*)colorWithSRGBRed:(CGFloat)red
                       green:(CGFloat)green
                        blue:(CGFloat)blue
                       alpha:(CGFloat)alpha API_AVAILABLE(macos(10.7));

@property(class, strong, readonly) NSColor* blackColor;
@property(class, strong, readonly) NSColor* whiteColor;
@property(class, strong, readonly) NSColor* clearColor;
@property(class, strong, readonly) NSColor* labelColor API_AVAILABLE(macos(10.10));

- (void)setFill API_AVAILABLE(macos(10.4));
- (void)setStroke API_AVAILABLE(macos(10.4));
- (NSColor*)colorWithAlphaComponent:(CGFloat)alpha;

@property(readonly) CGColorRef CGColor API_AVAILABLE(macos(10.8));

@end

NS_ASSUME_NONNULL_END
