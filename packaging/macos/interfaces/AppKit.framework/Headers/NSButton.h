#pragma once

#include <AppKit/NSControl.h>

NS_ASSUME_NONNULL_BEGIN

API_AVAILABLE(macos(10.0))
@interface NSButton : NSControl

+ (instancetype)buttonWithTitle:(NSString*)title
                         target:(nullable id)target
                         action:(nullable SEL)action API_AVAILABLE(macos(10.12));

@property(copy) NSString* title;
@property(copy) NSAttributedString* attributedTitle;
@property(copy) NSString* keyEquivalent;
- (void)performClick:(nullable id)sender;

@end

NS_ASSUME_NONNULL_END
