#pragma once

#include <AppKit/NSView.h>

// The two architectures disagree about right and centre.
#if TARGET_CPU_ARM64
#define APPKIT_TEXT_ALIGNMENT_RIGHT 2
#define APPKIT_TEXT_ALIGNMENT_CENTER 1
#else
#define APPKIT_TEXT_ALIGNMENT_RIGHT 1
#define APPKIT_TEXT_ALIGNMENT_CENTER 2
#endif

typedef NS_ENUM(NSInteger, NSTextAlignment) {
    NSTextAlignmentLeft = 0,
    NSTextAlignmentRight = APPKIT_TEXT_ALIGNMENT_RIGHT,
    NSTextAlignmentCenter = APPKIT_TEXT_ALIGNMENT_CENTER,
    NSTextAlignmentJustified = 3,
    NSTextAlignmentNatural = 4,
};

NS_ASSUME_NONNULL_BEGIN

/// The editing commands that a menu item sends to whatever has the focus.
API_AVAILABLE(macos(10.0))
@interface NSText : NSView

- (void)copy:(nullable id)sender;
- (void)cut:(nullable id)sender;
- (void)paste:(nullable id)sender;
- (void)delete:(nullable id)sender;
- (void)selectAll:(nullable id)sender;

@end

NS_ASSUME_NONNULL_END
