#pragma once

#include <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

API_AVAILABLE(macos(10.0))
@interface NSResponder : NSObject <NSCoding>

- (instancetype)init;
- (nullable instancetype)initWithCoder:(NSCoder*)coder;

@property(nullable, assign) NSResponder* nextResponder;
@property(readonly) BOOL acceptsFirstResponder;

@end

NS_ASSUME_NONNULL_END
