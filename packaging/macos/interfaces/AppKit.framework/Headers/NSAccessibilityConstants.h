#pragma once

#include <AppKit/AppKitDefines.h>
#include <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSAccessibilityNotificationName;
typedef NSString* NSAccessibilityRole;

APPKIT_EXTERN NSAccessibilityNotificationName const
    NSAccessibilityValueChangedNotification API_AVAILABLE(macos(10.0));
APPKIT_EXTERN NSAccessibilityRole const NSAccessibilityProgressIndicatorRole API_AVAILABLE(macos(10.0));

APPKIT_EXTERN void NSAccessibilityPostNotification(id element, NSAccessibilityNotificationName notification)
    API_AVAILABLE(macos(10.0));

NS_ASSUME_NONNULL_END
