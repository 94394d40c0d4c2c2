#pragma once

#include <AppKit/NSView.h>

API_AVAILABLE(macos(10.0))
@interface NSClipView : NSView

- (void)scrollToPoint:(NSPoint)newOrigin;

@end
