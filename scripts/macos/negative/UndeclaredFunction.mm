// compile: use of undeclared identifier 'NSBeep'

#import <AppKit/AppKit.h>

void complain();

void complain() {
#if FAULT
    NSBeep();
#else
    NSLog(@"beep");
#endif
}
