#pragma once

#import <AppKit/AppKit.h>

/// A level indicator that draws an outline for the whole and fills what is done: the system's own track
/// cannot be seen on the window's background. VoiceOver finds a progress indicator. Main thread.
@interface OrvaneProgressBar : NSLevelIndicator

+ (instancetype)bar;

/// Tells VoiceOver the value, bounded by the range. After each change of the value or the range.
- (void)tellValue;

@end
