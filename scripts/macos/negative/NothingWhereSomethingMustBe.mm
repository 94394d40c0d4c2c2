// compile: null passed to a callee that requires a non-null argument

#import <Foundation/Foundation.h>

NSURL* makeUrl();

NSURL* makeUrl() {
#if FAULT
    return [NSURL fileURLWithPath:nil];
#else
    return [NSURL fileURLWithPath:@"/opt"];
#endif
}
