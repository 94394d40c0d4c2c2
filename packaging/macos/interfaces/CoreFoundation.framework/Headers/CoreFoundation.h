#pragma once

#include <Availability.h>
#include <objc/objc.h>

/// The class of every string literal; the compiler itself refers to it.
OBJC_EXTERN int __CFConstantStringClassReference[] __API_AVAILABLE(macos(10.0));

/// Attends to the calling thread's events, on the main thread to its queue too, until somebody stops it.
OBJC_EXTERN void CFRunLoopRun(void) __API_AVAILABLE(macos(10.0));
