// compile: property 'titel' not found on object of type 'NSWindow *'

#import <AppKit/AppKit.h>

void nameWindow(NSWindow* window);

void nameWindow(NSWindow* window) {
#if FAULT
    window.titel = @"Varlen";
#else
    window.title = @"Varlen";
#endif
}
