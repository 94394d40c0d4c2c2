#pragma once

#include <AppKit/NSControl.h>
#include <AppKit/NSLayoutAnchor.h>

NS_ASSUME_NONNULL_BEGIN

typedef float NSLayoutPriority;

static const NSLayoutPriority NSLayoutPriorityRequired = 1000;
static const NSLayoutPriority NSLayoutPriorityDefaultHigh = 750;
static const NSLayoutPriority NSLayoutPriorityDragThatCanResizeWindow = 510;
static const NSLayoutPriority NSLayoutPriorityWindowSizeStayPut = 500;
static const NSLayoutPriority NSLayoutPriorityDragThatCannotResizeWindow = 490;
static const NSLayoutPriority NSLayoutPriorityDefaultLow = 250;
static const NSLayoutPriority NSLayoutPriorityFittingSizeCompression = 50;

typedef NS_ENUM(NSInteger, NSLayoutConstraintOrientation) {
    NSLayoutConstraintOrientationHorizontal = 0,
    NSLayoutConstraintOrientationVertical = 1,
};

API_AVAILABLE(macos(10.7))
@interface NSLayoutConstraint : NSObject

+ (void)activateConstraints:(NSArray<NSLayoutConstraint*>*)constraints API_AVAILABLE(macos(10.10));

@property NSLayoutPriority priority;

@end

@interface NSView (NSConstraintBasedLayoutInstallingConstraints)

@property(readonly, strong) NSLayoutXAxisAnchor* leadingAnchor API_AVAILABLE(macos(10.11));
@property(readonly, strong) NSLayoutXAxisAnchor* trailingAnchor API_AVAILABLE(macos(10.11));
@property(readonly, strong) NSLayoutYAxisAnchor* topAnchor API_AVAILABLE(macos(10.11));
@property(readonly, strong) NSLayoutYAxisAnchor* bottomAnchor API_AVAILABLE(macos(10.11));
@property(readonly, strong) NSLayoutDimension* widthAnchor API_AVAILABLE(macos(10.11));
@property(readonly, strong) NSLayoutDimension* heightAnchor API_AVAILABLE(macos(10.11));

@end

@interface NSView (NSConstraintBasedCompatibility)

@property BOOL translatesAutoresizingMaskIntoConstraints API_AVAILABLE(macos(10.7));

@end

@interface NSView (NSConstraintBasedLayoutLayering)

- (void)setContentHuggingPriority:(NSLayoutPriority)priority
                   forOrientation:(NSLayoutConstraintOrientation)orientation API_AVAILABLE(macos(10.7));

- (void)setContentCompressionResistancePriority:(NSLayoutPriority)priority
                                 forOrientation:(NSLayoutConstraintOrientation)orientation
    API_AVAILABLE(macos(10.7));

@end

NS_ASSUME_NONNULL_END
