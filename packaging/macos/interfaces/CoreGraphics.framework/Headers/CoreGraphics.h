#pragma once

#include <Availability.h>

#include <CoreGraphics/CGGeometry.h>

/// A colour in a colour space. AppKit hands such references out; nothing here makes or releases one.
typedef struct CGColor* CGColorRef;
