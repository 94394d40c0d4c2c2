// compile: conflicting return type in implementation of 'applicationShouldTerminate:'

#import <AppKit/AppKit.h>

@interface Delegate : NSObject <NSApplicationDelegate>
@end

@implementation Delegate

#if FAULT
- (BOOL)applicationShouldTerminate:(NSApplication*)sender {
    return YES;
}
#else
- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)sender {
    return NSTerminateNow;
}
#endif

@end
