#pragma once

#include <AppKit/NSAccessibilityConstants.h>
#include <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

/// What VoiceOver asks a control and what a program may set instead; NSView answers all of it.
API_AVAILABLE(macos(10.10))
@protocol NSAccessibility <NSObject>
@required

@property(nullable, copy) NSString* accessibilityLabel API_AVAILABLE(macos(10.10));
@property(nullable, copy) NSAccessibilityRole accessibilityRole API_AVAILABLE(macos(10.10));
@property(nullable, strong) id accessibilityValue API_AVAILABLE(macos(10.10));
@property(nullable, strong) id accessibilityMinValue API_AVAILABLE(macos(10.10));
@property(nullable, strong) id accessibilityMaxValue API_AVAILABLE(macos(10.10));

@end

NS_ASSUME_NONNULL_END
