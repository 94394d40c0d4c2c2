// compile: format specifies type 'id' but the argument has type 'int'

#import <Foundation/Foundation.h>

NSString* describe(int count);

NSString* describe(int count) {
#if FAULT
    return [NSString stringWithFormat:@"%@ files", count];
#else
    return [NSString stringWithFormat:@"%d files", count];
#endif
}
