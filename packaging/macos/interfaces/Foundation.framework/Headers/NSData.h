#pragma once

#include <Foundation/NSObject.h>
#include <Foundation/NSRange.h>

NS_ASSUME_NONNULL_BEGIN

API_AVAILABLE(macos(10.0))
@interface NSData : NSObject <NSCopying, NSMutableCopying, NSSecureCoding>

@property(readonly) NSUInteger length;
@property(readonly) const void* bytes NS_RETURNS_INNER_POINTER;
- (void)enumerateByteRangesUsingBlock:(void(NS_NOESCAPE ^)(const void* bytes, NSRange byteRange, BOOL* stop))
                                          block API_AVAILABLE(macos(10.9));

+ (instancetype)data;
+ (instancetype)dataWithBytes:(nullable const void*)bytes length:(NSUInteger)length;
+ (instancetype)dataWithBytesNoCopy:(void*)bytes length:(NSUInteger)length freeWhenDone:(BOOL)b;
- (instancetype)initWithBytesNoCopy:(void*)bytes
                             length:(NSUInteger)length
                        deallocator:(nullable void (^)(void* bytes, NSUInteger length))deallocator
    API_AVAILABLE(macos(10.9));

@end

NS_ASSUME_NONNULL_END
