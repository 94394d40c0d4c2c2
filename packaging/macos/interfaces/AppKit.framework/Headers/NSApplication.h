#pragma once

#include <AppKit/AppKitDefines.h>
#include <AppKit/NSResponder.h>
#include <AppKit/NSRunningApplication.h>

NS_ASSUME_NONNULL_BEGIN

@class NSMenu;
@class NSWindow;
@protocol NSApplicationDelegate;

typedef NSInteger NSModalResponse;

static const NSModalResponse NSModalResponseStop = -1000;
static const NSModalResponse NSModalResponseAbort = -1001;
static const NSModalResponse NSModalResponseContinue = -1002;

typedef NS_ENUM(NSUInteger, NSApplicationTerminateReply) {
    NSTerminateCancel = 0,
    NSTerminateNow = 1,
    NSTerminateLater = 2,
};

API_AVAILABLE(macos(10.0))
@interface NSApplication : NSResponder

@property(class, readonly, strong) __kindof NSApplication* sharedApplication;
@property(nullable, weak) id<NSApplicationDelegate> delegate;
@property(nullable, strong) NSMenu* mainMenu;
@property(nullable, readonly, weak) NSWindow* mainWindow;
@property(nullable, readonly, weak) NSWindow* modalWindow;
@property(getter=isActive, readonly) BOOL active;
@property(getter=isRunning, readonly) BOOL running;

@property(nullable, strong) NSMenu* windowsMenu;

- (void)run;
- (void)finishLaunching;
- (void)stop:(nullable id)sender;
- (void)terminate:(nullable id)sender;
- (void)replyToApplicationShouldTerminate:(BOOL)shouldTerminate;

- (void)hide:(nullable id)sender;
- (void)unhide:(nullable id)sender;
- (void)hideOtherApplications:(nullable id)sender;
- (void)unhideAllApplications:(nullable id)sender;
- (void)orderFrontStandardAboutPanel:(nullable id)sender;

- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy API_AVAILABLE(macos(10.6));
- (void)activateIgnoringOtherApps:(BOOL)flag API_DEPRECATED_WITH_REPLACEMENT("activate", macos(10.0, 100000));
- (void)activate API_AVAILABLE(macos(14.0));

@end

APPKIT_EXTERN __kindof NSApplication* _Null_unspecified NSApp API_AVAILABLE(macos(10.0));

APPKIT_EXTERN int NSApplicationMain(int argc, const char* _Nonnull argv[_Nonnull]) API_AVAILABLE(macos(10.0));

API_AVAILABLE(macos(10.0))
@protocol NSApplicationDelegate <NSObject>
@optional

- (void)applicationWillFinishLaunching:(NSNotification*)notification;
- (void)applicationDidFinishLaunching:(NSNotification*)notification;
- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)sender;
- (void)applicationWillTerminate:(NSNotification*)notification;
- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)sender;
- (BOOL)applicationShouldHandleReopen:(NSApplication*)sender hasVisibleWindows:(BOOL)hasVisibleWindows;
- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)app API_AVAILABLE(macos(12.0));

@end

NS_ASSUME_NONNULL_END
