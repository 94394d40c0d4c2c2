// link: undefined symbol: _OBJC_CLASS_$_NSStatusBar

#import <Foundation/Foundation.h>

@interface NSStatusBar : NSObject
@end

int main() {
#if FAULT
    return [[NSStatusBar alloc] init] == nil;
#else
    return [[NSObject alloc] init] == nil;
#endif
}
