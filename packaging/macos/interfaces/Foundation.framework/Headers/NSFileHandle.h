#pragma once

#include <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSData;
@class NSError;

API_AVAILABLE(macos(10.0))
@interface NSFileHandle : NSObject <NSSecureCoding>

- (instancetype)initWithFileDescriptor:(int)fd closeOnDealloc:(BOOL)closeopt;
- (nullable NSData*)readDataToEndOfFileAndReturnError:(out NSError** _Nullable)error
    API_AVAILABLE(macos(10.15));
@property(readonly) int fileDescriptor;

@end

API_AVAILABLE(macos(10.0))
@interface NSPipe : NSObject

@property(readonly, retain) NSFileHandle* fileHandleForReading;
@property(readonly, retain) NSFileHandle* fileHandleForWriting;
+ (NSPipe*)pipe;

@end

NS_ASSUME_NONNULL_END
