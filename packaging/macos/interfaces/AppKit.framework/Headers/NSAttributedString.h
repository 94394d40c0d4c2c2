#pragma once

#include <AppKit/AppKitDefines.h>
#include <Foundation/Foundation.h>

APPKIT_EXTERN NSAttributedStringKey _Nonnull const NSFontAttributeName API_AVAILABLE(macos(10.0));
APPKIT_EXTERN NSAttributedStringKey _Nonnull const NSForegroundColorAttributeName API_AVAILABLE(macos(10.0));
