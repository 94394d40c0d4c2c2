#pragma once

#include <AppKit/NSEvent.h>

NS_ASSUME_NONNULL_BEGIN

@class NSMenu;

API_AVAILABLE(macos(10.0))
@interface NSMenuItem : NSObject <NSCopying, NSCoding>

+ (NSMenuItem*)separatorItem;
- (instancetype)initWithTitle:(NSString*)string
                       action:(nullable SEL)selector
                keyEquivalent:(NSString*)charCode;

@property(copy) NSString* title;
@property(nullable, strong) NSMenu* submenu;
@property(copy) NSString* keyEquivalent;
@property NSEventModifierFlags keyEquivalentModifierMask;
@property(nullable, weak) id target;
@property(nullable) SEL action;
@property NSInteger tag;
@property(getter=isEnabled) BOOL enabled;

@end

NS_ASSUME_NONNULL_END
