#pragma once

#include <objc/objc.h>

#define APPKIT_EXTERN OBJC_EXTERN
