#pragma once

#include <AppKit/NSControl.h>

NS_ASSUME_NONNULL_BEGIN

@class NSColor;

API_AVAILABLE(macos(10.0))
@interface NSTextField : NSControl

+ (instancetype)wrappingLabelWithString:(NSString*)stringValue API_AVAILABLE(macos(10.12));

@property(nullable, copy) NSColor* textColor;
@property(nullable, copy) NSColor* backgroundColor;
@property BOOL drawsBackground;
@property(getter=isBezeled) BOOL bezeled;
@property(getter=isBordered) BOOL bordered;
@property(getter=isEditable) BOOL editable;
@property(getter=isSelectable) BOOL selectable;
@property CGFloat preferredMaxLayoutWidth API_AVAILABLE(macos(10.8));
@property NSInteger maximumNumberOfLines API_AVAILABLE(macos(10.11));

@end

NS_ASSUME_NONNULL_END
