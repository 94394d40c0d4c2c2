#pragma once

#include <AppKit/NSMenuItem.h>

NS_ASSUME_NONNULL_BEGIN

@protocol NSMenuDelegate;

API_AVAILABLE(macos(10.0))
@interface NSMenu : NSObject <NSCopying, NSCoding>

- (instancetype)initWithTitle:(NSString*)title;

@property(copy) NSString* title;
@property(nullable, weak) id<NSMenuDelegate> delegate API_AVAILABLE(macos(10.3));
@property BOOL autoenablesItems;

- (void)addItem:(NSMenuItem*)newItem;
- (NSMenuItem*)addItemWithTitle:(NSString*)string
                         action:(nullable SEL)selector
                  keyEquivalent:(NSString*)charCode;
- (void)setSubmenu:(nullable NSMenu*)menu forItem:(NSMenuItem*)item;

@end

API_AVAILABLE(macos(10.3))
@protocol NSMenuDelegate <NSObject>
@optional

- (void)menuNeedsUpdate:(NSMenu*)menu;
- (void)menuWillOpen:(NSMenu*)menu API_AVAILABLE(macos(10.5));

@end

NS_ASSUME_NONNULL_END
