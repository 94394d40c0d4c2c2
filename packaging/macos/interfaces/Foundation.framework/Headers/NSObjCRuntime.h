#pragma once

#include <objc/NSObjCRuntime.h>
#include <objc/objc.h>
#include <os/availability.h>

#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")

#define NS_ENUM(type, name)                                                                                  \
    enum __attribute__((enum_extensibility(open))) name : type name;                                         \
    enum name : type

// Flags keep the integer's own type in C++, so that they can be combined without a cast.
#define NS_OPTIONS(type, name)                                                                               \
    type __attribute__((availability(swift, unavailable))) name;                                             \
    enum __attribute__((flag_enum, enum_extensibility(open))) : type

#define NS_FORMAT_FUNCTION(text, first) __attribute__((format(__NSString__, text, first)))
#define NS_RETURNS_INNER_POINTER __attribute__((objc_returns_inner_pointer))
#define NS_REQUIRES_SUPER __attribute__((objc_requires_super))
#define NS_NOESCAPE __attribute__((noescape))
#define NS_UNAVAILABLE __attribute__((unavailable))

#define FOUNDATION_EXPORT OBJC_EXTERN

NS_ASSUME_NONNULL_BEGIN

@class NSString;

FOUNDATION_EXPORT NSString* NSStringFromSelector(SEL aSelector) API_AVAILABLE(macos(10.0));
FOUNDATION_EXPORT NSString* NSStringFromClass(Class aClass) API_AVAILABLE(macos(10.0));
FOUNDATION_EXPORT void NSLog(NSString* format, ...) NS_FORMAT_FUNCTION(1, 2) API_AVAILABLE(macos(10.0));

static const NSInteger NSNotFound = NSIntegerMax;

NS_ASSUME_NONNULL_END
