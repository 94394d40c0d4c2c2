// link: undefined symbol: _NSBeep

#import <Foundation/Foundation.h>

extern "C" void NSBeep();

int main() {
#if FAULT
    NSBeep();
#else
    NSLog(@"beep");
#endif
}
