#pragma once

#include <Foundation/Foundation.h>

typedef NS_ENUM(NSInteger, NSScrollerStyle) {
    NSScrollerStyleLegacy = 0,
    NSScrollerStyleOverlay = 1,
};

typedef NS_ENUM(NSInteger, NSScrollerKnobStyle) {
    NSScrollerKnobStyleDefault = 0,
    NSScrollerKnobStyleDark = 1,
    NSScrollerKnobStyleLight = 2,
};
