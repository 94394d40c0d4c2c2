#pragma once

#include <AppKit/NSAppearance.h>
#include <AppKit/NSResponder.h>

NS_ASSUME_NONNULL_BEGIN

@class NSColor;
@class NSView;
@class NSViewController;
@protocol NSWindowDelegate;

typedef NS_OPTIONS(NSUInteger, NSWindowStyleMask) {
    NSWindowStyleMaskBorderless = 0,
    NSWindowStyleMaskTitled = 1 << 0,
    NSWindowStyleMaskClosable = 1 << 1,
    NSWindowStyleMaskMiniaturizable = 1 << 2,
    NSWindowStyleMaskResizable = 1 << 3,
    NSWindowStyleMaskFullSizeContentView = 1 << 15,
};

typedef NS_ENUM(NSUInteger, NSBackingStoreType) {
    NSBackingStoreBuffered = 2,
};

API_AVAILABLE(macos(10.0))
@interface NSWindow : NSResponder <NSAppearanceCustomization>

- (instancetype)initWithContentRect:(NSRect)contentRect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backingStoreType
                              defer:(BOOL)flag;
+ (instancetype)windowWithContentViewController:(NSViewController*)contentViewController
    API_AVAILABLE(macos(10.10));

@property(copy) NSString* title;
@property(nullable, strong) NSViewController* contentViewController API_AVAILABLE(macos(10.10));
@property(nullable, strong) __kindof NSView* contentView;
@property(nullable, weak) id<NSWindowDelegate> delegate;
@property NSWindowStyleMask styleMask;
@property(null_resettable, copy) NSColor* backgroundColor;
@property(getter=isMovableByWindowBackground) BOOL movableByWindowBackground;
@property(getter=isReleasedWhenClosed) BOOL releasedWhenClosed;
@property(getter=isVisible, readonly) BOOL visible;
@property(nullable, strong) NSView* initialFirstResponder;
@property(getter=isRestorable) BOOL restorable API_AVAILABLE(macos(10.7));

- (void)center;
- (void)close;
- (void)performClose:(nullable id)sender;
- (void)performMiniaturize:(nullable id)sender;
- (void)makeKeyAndOrderFront:(nullable id)sender;
- (void)orderOut:(nullable id)sender;
- (void)displayIfNeeded;
- (void)setContentSize:(NSSize)size;

@end

API_AVAILABLE(macos(10.0))
@protocol NSWindowDelegate <NSObject>
@optional

- (BOOL)windowShouldClose:(NSWindow*)sender;
- (void)windowWillClose:(NSNotification*)notification;

@end

NS_ASSUME_NONNULL_END
