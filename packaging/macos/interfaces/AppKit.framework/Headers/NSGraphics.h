#pragma once

#include <AppKit/AppKitDefines.h>
#include <Foundation/Foundation.h>

APPKIT_EXTERN void NSRectFill(NSRect rect) API_AVAILABLE(macos(10.0));

typedef NS_ENUM(NSUInteger, NSBorderType) {
    NSNoBorder = 0,
    NSLineBorder = 1,
    NSBezelBorder = 2,
    NSGrooveBorder = 3,
};
