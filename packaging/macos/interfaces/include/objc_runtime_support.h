#pragma once

#include <Availability.h>
#include <objc/objc.h>

/// What the compiler calls on its own behalf: reference counting, autorelease pools, the loops over
/// collections and exceptions. No source names these; the list says what a link may find in the runtime.

OBJC_EXTERN id objc_alloc(Class type) __API_AVAILABLE(macos(10.9));
OBJC_EXTERN id objc_alloc_init(Class type) __API_AVAILABLE(macos(10.14.4));
OBJC_EXTERN id objc_opt_new(Class type) __API_AVAILABLE(macos(10.15));
OBJC_EXTERN id objc_opt_self(id value) __API_AVAILABLE(macos(10.15));
OBJC_EXTERN Class objc_opt_class(id value) __API_AVAILABLE(macos(10.15));
OBJC_EXTERN BOOL objc_opt_isKindOfClass(id value, Class type) __API_AVAILABLE(macos(10.15));
OBJC_EXTERN BOOL objc_opt_respondsToSelector(id value, SEL selector) __API_AVAILABLE(macos(10.15));

OBJC_EXTERN id objc_retain(id value) __API_AVAILABLE(macos(10.7));
OBJC_EXTERN void objc_release(id value) __API_AVAILABLE(macos(10.7));
OBJC_EXTERN id objc_autorelease(id value) __API_AVAILABLE(macos(10.7));
OBJC_EXTERN id objc_retainAutorelease(id value) __API_AVAILABLE(macos(10.7));
OBJC_EXTERN id objc_retainBlock(id value) __API_AVAILABLE(macos(10.7));
OBJC_EXTERN id objc_autoreleaseReturnValue(id value) __API_AVAILABLE(macos(10.7));
OBJC_EXTERN id objc_retainAutoreleaseReturnValue(id value) __API_AVAILABLE(macos(10.7));
OBJC_EXTERN id objc_retainAutoreleasedReturnValue(id value) __API_AVAILABLE(macos(10.7));
OBJC_EXTERN id objc_unsafeClaimAutoreleasedReturnValue(id value) __API_AVAILABLE(macos(10.11));
OBJC_EXTERN void objc_storeStrong(id* location, id value) __API_AVAILABLE(macos(10.7));

OBJC_EXTERN id objc_initWeak(id* location, id value) __API_AVAILABLE(macos(10.7));
OBJC_EXTERN id objc_storeWeak(id* location, id value) __API_AVAILABLE(macos(10.7));
OBJC_EXTERN id objc_loadWeakRetained(id* location) __API_AVAILABLE(macos(10.7));
OBJC_EXTERN void objc_copyWeak(id* destination, id* source) __API_AVAILABLE(macos(10.7));
OBJC_EXTERN void objc_moveWeak(id* destination, id* source) __API_AVAILABLE(macos(10.7));
OBJC_EXTERN void objc_destroyWeak(id* location) __API_AVAILABLE(macos(10.7));

OBJC_EXTERN void* objc_autoreleasePoolPush(void) __API_AVAILABLE(macos(10.7));
OBJC_EXTERN void objc_autoreleasePoolPop(void* pool) __API_AVAILABLE(macos(10.7));

OBJC_EXTERN id objc_msgSendSuper2(void) __API_AVAILABLE(macos(10.6));
OBJC_EXTERN void objc_enumerationMutation(id collection) __API_AVAILABLE(macos(10.5));
OBJC_EXTERN void* _objc_empty_cache __API_AVAILABLE(macos(10.0));

OBJC_EXTERN void* objc_begin_catch(void* exception) __API_AVAILABLE(macos(10.5));
OBJC_EXTERN void objc_end_catch(void) __API_AVAILABLE(macos(10.5));
OBJC_EXTERN void objc_exception_throw(id exception) __API_AVAILABLE(macos(10.3));
OBJC_EXTERN void objc_exception_rethrow(void) __API_AVAILABLE(macos(10.5));
OBJC_EXTERN int __objc_personality_v0(void) __API_AVAILABLE(macos(10.5));
