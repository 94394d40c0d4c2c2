#pragma once

#include <AppKit/NSText.h>
#include <AppKit/NSView.h>

NS_ASSUME_NONNULL_BEGIN

@class NSFont;

API_AVAILABLE(macos(10.0))
@interface NSControl : NSView

- (instancetype)initWithFrame:(NSRect)frameRect;
- (nullable instancetype)initWithCoder:(NSCoder*)coder;

@property(nullable, weak) id target;
@property(nullable) SEL action;
@property(getter=isEnabled) BOOL enabled;

@property(copy) NSString* stringValue;
@property double doubleValue;

@property(nullable, strong) NSFont* font;
@property NSTextAlignment alignment;

@end

NS_ASSUME_NONNULL_END
