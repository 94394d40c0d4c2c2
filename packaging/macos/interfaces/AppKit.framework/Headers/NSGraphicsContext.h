#pragma once

#include <Foundation/Foundation.h>

API_AVAILABLE(macos(10.0))
@interface NSGraphicsContext : NSObject

+ (void)saveGraphicsState;
+ (void)restoreGraphicsState;

@end
