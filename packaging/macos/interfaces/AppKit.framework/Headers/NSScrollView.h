#pragma once

#include <AppKit/NSClipView.h>
#include <AppKit/NSGraphics.h>
#include <AppKit/NSScroller.h>

NS_ASSUME_NONNULL_BEGIN

API_AVAILABLE(macos(10.0))
@interface NSScrollView : NSView

@property(strong) NSClipView* contentView;
@property(nullable, strong) __kindof NSView* documentView;
@property BOOL drawsBackground;
@property NSBorderType borderType;
@property BOOL hasVerticalScroller;
@property BOOL autohidesScrollers;
@property NSScrollerStyle scrollerStyle API_AVAILABLE(macos(10.7));
@property NSScrollerKnobStyle scrollerKnobStyle API_AVAILABLE(macos(10.7));
- (void)reflectScrolledClipView:(NSClipView*)cView;

@end

NS_ASSUME_NONNULL_END
