#pragma once

#include <CoreGraphics/CGGeometry.h>
#include <Foundation/NSObjCRuntime.h>

typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;

FOUNDATION_EXPORT const NSPoint NSZeroPoint API_AVAILABLE(macos(10.0));
FOUNDATION_EXPORT const NSSize NSZeroSize API_AVAILABLE(macos(10.0));
FOUNDATION_EXPORT const NSRect NSZeroRect API_AVAILABLE(macos(10.0));

FOUNDATION_EXPORT NSRect NSInsetRect(NSRect aRect, CGFloat dX, CGFloat dY) API_AVAILABLE(macos(10.0));

inline NSPoint NSMakePoint(CGFloat x, CGFloat y) {
    NSPoint point;
    point.x = x;
    point.y = y;
    return point;
}

inline NSSize NSMakeSize(CGFloat width, CGFloat height) {
    NSSize size;
    size.width = width;
    size.height = height;
    return size;
}

inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
    NSRect rectangle;
    rectangle.origin = NSMakePoint(x, y);
    rectangle.size = NSMakeSize(width, height);
    return rectangle;
}
