#pragma once

#import <AppKit/AppKit.h>

/// A text that the user reads: neither editable nor selectable, wrapped in words if need be, and scrolled
/// when it is longer than its place. Only a text that scrolls takes the keyboard's focus. Main thread.
@interface OrvaneScrollingText : NSScrollView

@property(nonatomic, readonly) NSTextField* label;

+ (instancetype)areaOfWidth:(CGFloat)width;

/// From its beginning.
- (void)showText:(NSString*)text;

/// Never higher than its text; with `priority` not lower either, but at least as high as its first lines.
- (void)limitHeightWithPriority:(NSLayoutPriority)priority;

@end
