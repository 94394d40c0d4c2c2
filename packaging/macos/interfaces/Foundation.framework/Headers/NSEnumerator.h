#pragma once

#include <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

/// What a `for … in` loop and a collection share; the compiler knows the layout.
typedef struct {
    unsigned long state;
    id __unsafe_unretained _Nullable* _Nullable itemsPtr;
    unsigned long* _Nullable mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)len;
@end

NS_ASSUME_NONNULL_END
