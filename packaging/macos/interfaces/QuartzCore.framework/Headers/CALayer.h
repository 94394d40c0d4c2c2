#pragma once

#include <CoreGraphics/CoreGraphics.h>
#include <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

API_AVAILABLE(macos(10.5))
@interface CALayer : NSObject

@property(nullable) CGColorRef backgroundColor;

@end

NS_ASSUME_NONNULL_END
