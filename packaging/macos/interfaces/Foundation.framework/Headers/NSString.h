#pragma once

#include <Foundation/NSObject.h>
#include <Foundation/NSRange.h>

NS_ASSUME_NONNULL_BEGIN

@class NSData;

typedef unsigned short unichar;
typedef NSUInteger NSStringEncoding;

enum : NSStringEncoding { NSASCIIStringEncoding = 1, NSUTF8StringEncoding = 4, NSUTF16StringEncoding = 10 };

API_AVAILABLE(macos(10.0))
@interface NSString : NSObject <NSCopying, NSMutableCopying, NSSecureCoding>

@property(readonly) NSUInteger length;
- (unichar)characterAtIndex:(NSUInteger)index;
- (instancetype)init;

@property(nullable, readonly) const char* UTF8String NS_RETURNS_INNER_POINTER;
- (NSUInteger)lengthOfBytesUsingEncoding:(NSStringEncoding)enc;
- (nullable NSData*)dataUsingEncoding:(NSStringEncoding)encoding;

- (BOOL)isEqualToString:(NSString*)aString;
- (BOOL)hasPrefix:(NSString*)str;
- (BOOL)hasSuffix:(NSString*)str;
- (NSString*)stringByAppendingString:(NSString*)aString;

+ (instancetype)string;
+ (nullable instancetype)stringWithUTF8String:(const char*)nullTerminatedCString;
+ (instancetype)stringWithFormat:(NSString*)format, ... NS_FORMAT_FUNCTION(1, 2);
- (nullable instancetype)initWithUTF8String:(const char*)nullTerminatedCString;
- (nullable instancetype)initWithBytes:(const void*)bytes
                                length:(NSUInteger)len
                              encoding:(NSStringEncoding)encoding;
- (nullable instancetype)initWithData:(NSData*)data encoding:(NSStringEncoding)encoding;

@end

NS_ASSUME_NONNULL_END
