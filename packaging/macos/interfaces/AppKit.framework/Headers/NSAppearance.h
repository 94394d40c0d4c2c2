#pragma once

#include <AppKit/AppKitDefines.h>
#include <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSAppearanceName;

APPKIT_EXTERN NSAppearanceName const NSAppearanceNameAqua API_AVAILABLE(macos(10.9));

API_AVAILABLE(macos(10.9))
@interface NSAppearance : NSObject <NSSecureCoding>

+ (nullable NSAppearance*)appearanceNamed:(NSAppearanceName)name API_AVAILABLE(macos(10.9));

@end

API_AVAILABLE(macos(10.9))
@protocol NSAppearanceCustomization <NSObject>

@property(nullable, strong) NSAppearance* appearance API_AVAILABLE(macos(10.9));

@end

NS_ASSUME_NONNULL_END
