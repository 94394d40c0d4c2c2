#include "platform/ProgressBar_mac.h"

#include "platform/BarProportion.h"

using namespace orvane;

namespace {

constexpr CGFloat kOutlineAlpha = 0.63;

NSBezierPath* roundedBar(NSRect area) {
    const CGFloat radius = area.size.height / 2;
    return [NSBezierPath bezierPathWithRoundedRect:area xRadius:radius yRadius:radius];
}

} // namespace

@implementation OrvaneProgressBar

+ (instancetype)bar {
    OrvaneProgressBar* const bar = [[self alloc] initWithFrame:NSZeroRect];
    bar.levelIndicatorStyle = NSLevelIndicatorStyleContinuousCapacity;
    bar.editable = NO;
    bar.accessibilityRole = NSAccessibilityProgressIndicatorRole;
    return bar;
}

/// Left to right in every language that the program speaks.
- (void)drawRect:(NSRect)dirtyRect {
    const NSRect area = self.bounds;
    [[NSColor.whiteColor colorWithAlphaComponent:kOutlineAlpha] setStroke];
    [roundedBar(NSInsetRect(area, 0.5, 0.5)) stroke];

    [NSGraphicsContext saveGraphicsState];
    [roundedBar(area) addClip];
    [NSColor.whiteColor setFill];
    NSRect done = area;
    done.size.width *= platform::barProportion(self.minValue, self.maxValue, self.doubleValue);
    NSRectFill(done);
    [NSGraphicsContext restoreGraphicsState];
}

/// Drawn by `drawRect:`, whatever the system does for its own indicators.
- (BOOL)wantsUpdateLayer {
    return NO;
}

- (void)tellValue {
    const double range = self.maxValue - self.minValue;
    self.accessibilityMinValue = @(self.minValue);
    self.accessibilityMaxValue = @(self.maxValue);
    self.accessibilityValue =
        @(self.minValue + range * platform::barProportion(self.minValue, self.maxValue, self.doubleValue));
    self.needsDisplay = YES;
    NSAccessibilityPostNotification(self, NSAccessibilityValueChangedNotification);
}

@end
