// compile: method 'copyWithZone:' in protocol 'NSCopying' not implemented

#import <Foundation/Foundation.h>

@interface Ticket : NSObject <NSCopying>
@end

@implementation Ticket

#if !FAULT
- (id)copyWithZone:(NSZone*)zone {
    return self;
}
#endif

@end
