#pragma once

#include <AppKit/NSAccessibility.h>
#include <AppKit/NSResponder.h>

NS_ASSUME_NONNULL_BEGIN

@class CALayer;
@class NSWindow;

API_AVAILABLE(macos(10.0))
@interface NSView : NSResponder <NSAccessibility>

- (instancetype)initWithFrame:(NSRect)frameRect;
- (nullable instancetype)initWithCoder:(NSCoder*)coder;

@property(nullable, readonly, assign) NSWindow* window;
@property(nullable, readonly, assign) NSView* superview;
@property(copy) NSArray<__kindof NSView*>* subviews;
- (void)addSubview:(NSView*)view;
- (void)removeFromSuperview;

@property NSRect frame;
@property NSRect bounds;
@property(getter=isHidden) BOOL hidden;
@property BOOL needsDisplay;
@property(nullable, assign) NSView* nextKeyView;

- (void)drawRect:(NSRect)dirtyRect;
@property(getter=isFlipped, readonly) BOOL flipped;
@property(readonly) BOOL wantsUpdateLayer API_AVAILABLE(macos(10.8));
@property(readonly) NSRect focusRingMaskBounds API_AVAILABLE(macos(10.7));

@property BOOL wantsLayer API_AVAILABLE(macos(10.5));
@property(nullable, strong) CALayer* layer API_AVAILABLE(macos(10.5));

@end

NS_ASSUME_NONNULL_END
