#include "platform/ScrollingText_mac.h"

#include <initializer_list>

namespace {

constexpr CGFloat kFewestPointsShown = 57; ///< three lines of the step's font
constexpr NSLayoutPriority kKeepFirstLines = 600;
constexpr NSLayoutPriority kTextKeepsItsHeight = 700;

} // namespace

/// Counts from the top, so that a text shorter than its place is at the place's top.
@interface OrvaneTopClipView : NSClipView
@end

@implementation OrvaneTopClipView

- (BOOL)isFlipped {
    return YES;
}

@end

@implementation OrvaneScrollingText

@synthesize label = label_;

+ (instancetype)areaOfWidth:(CGFloat)width {
    OrvaneScrollingText* const area = [[self alloc] initWithFrame:NSZeroRect];
    area.contentView = [[OrvaneTopClipView alloc] initWithFrame:NSZeroRect];
    area.drawsBackground = NO;
    area.borderType = NSNoBorder;
    area.hasVerticalScroller = YES;
    area.autohidesScrollers = YES;
    area.scrollerStyle = NSScrollerStyleOverlay; // takes no width from the text
    area.scrollerKnobStyle = NSScrollerKnobStyleLight;
    [area addLabelOfWidth:width];
    return area;
}

- (void)addLabelOfWidth:(CGFloat)width {
    NSTextField* const label = [NSTextField wrappingLabelWithString:@""];
    label.selectable = NO;
    label.preferredMaxLayoutWidth = width;
    label.translatesAutoresizingMaskIntoConstraints = NO;
    for (const auto orientation :
         {NSLayoutConstraintOrientationHorizontal, NSLayoutConstraintOrientationVertical}) {
        [label setContentHuggingPriority:kTextKeepsItsHeight forOrientation:orientation];
        [label setContentCompressionResistancePriority:kTextKeepsItsHeight forOrientation:orientation];
    }
    label_ = label;
    self.documentView = label;
    NSClipView* const clip = self.contentView;
    [NSLayoutConstraint activateConstraints:@[
        [label.topAnchor constraintEqualToAnchor:clip.topAnchor],
        [label.leadingAnchor constraintEqualToAnchor:clip.leadingAnchor],
        [label.trailingAnchor constraintEqualToAnchor:clip.trailingAnchor],
    ]];
}

- (void)showText:(NSString*)text {
    label_.stringValue = text;
    [self.contentView scrollToPoint:NSZeroPoint];
    [self reflectScrolledClipView:self.contentView];
}

- (void)limitHeightWithPriority:(NSLayoutPriority)priority {
    NSLayoutConstraint* const whole = [self.heightAnchor constraintEqualToAnchor:label_.heightAnchor];
    whole.priority = priority;
    NSLayoutConstraint* const firstLines =
        [self.heightAnchor constraintGreaterThanOrEqualToConstant:kFewestPointsShown];
    firstLines.priority = kKeepFirstLines;
    [NSLayoutConstraint activateConstraints:@[
        [self.heightAnchor constraintLessThanOrEqualToAnchor:label_.heightAnchor], whole, firstLines
    ]];
}

- (BOOL)acceptsFirstResponder {
    return label_.frame.size.height > self.contentView.bounds.size.height;
}

/// NSView draws the ring around these and has none of its own.
- (NSRect)focusRingMaskBounds {
    return self.bounds;
}

@end
