#pragma once

#include <AppKit/NSApplication.h>

NS_ASSUME_NONNULL_BEGIN

@class NSButton;

typedef NS_ENUM(NSUInteger, NSAlertStyle) {
    NSAlertStyleWarning = 0,
    NSAlertStyleInformational = 1,
    NSAlertStyleCritical = 2,
};

static const NSModalResponse NSAlertFirstButtonReturn = 1000;
static const NSModalResponse NSAlertSecondButtonReturn = 1001;
static const NSModalResponse NSAlertThirdButtonReturn = 1002;

API_AVAILABLE(macos(10.3))
@interface NSAlert : NSObject

@property(copy) NSString* messageText;
@property(copy) NSString* informativeText;
@property NSAlertStyle alertStyle;
- (NSButton*)addButtonWithTitle:(NSString*)title;
@property(readonly, copy) NSArray<NSButton*>* buttons;
- (NSModalResponse)runModal;

@end

NS_ASSUME_NONNULL_END
