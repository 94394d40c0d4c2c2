#pragma once

#include <AppKit/NSControl.h>

NS_ASSUME_NONNULL_BEGIN

@class NSColor;

typedef NS_ENUM(NSUInteger, NSLevelIndicatorStyle) {
    NSLevelIndicatorStyleRelevancy = 0,
    NSLevelIndicatorStyleContinuousCapacity = 1,
    NSLevelIndicatorStyleDiscreteCapacity = 2,
    NSLevelIndicatorStyleRating = 3,
};

API_AVAILABLE(macos(10.4))
@interface NSLevelIndicator : NSControl

@property NSLevelIndicatorStyle levelIndicatorStyle API_AVAILABLE(macos(10.10));
@property double minValue;
@property double maxValue;
@property(getter=isEditable) BOOL editable API_AVAILABLE(macos(10.13));
@property(null_resettable, copy) NSColor* fillColor API_AVAILABLE(macos(10.13));

@end

NS_ASSUME_NONNULL_END
