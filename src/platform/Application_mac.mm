#include "platform/Application.h"

#include "platform/Controls_mac.h"
#include "platform/Foundation_mac.h"
#include "platform/MainMenu_mac.h"
#include "platform/WindowPresence.h"

#import <AppKit/AppKit.h>

#include <dispatch/dispatch.h>
#include <unistd.h>

using namespace orvane;

namespace {

/// Assistive technology and the Dock reach the program while an alert covers its window.
bool isAlertOpen() { return NSApplication.sharedApplication.modalWindow != nil; }

} // namespace

/// Holds the window's view and its controls. The portable controller is called by `showWindow`, not from the
/// life cycle of the view: AppKit may be committing a transaction there, in which it shows no alert.
@interface OrvaneViewController : NSViewController {
@public
    std::shared_ptr<platform::ViewControllerBase> controller;
    platform::MainView mainView;
}
@end

@implementation OrvaneViewController

- (void)loadView {
    mainView = platform::makeMainView(self, @selector(cancelButtonClicked:));
    self.view = mainView.view;
}

- (void)cancelButtonClicked:(id)sender {
    if (!isAlertOpen()) {
        controller->cancelButtonClicked();
    }
}

@end

@interface OrvaneApplicationDelegate : NSObject <NSApplicationDelegate> {
@public
    platform::ApplicationDelegate* delegate;
    platform::ViewControllerFactory makeViewController;
    std::string windowTitle;
    platform::WindowPresence presence;
    NSWindow* window;
}
@end

@implementation OrvaneApplicationDelegate

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
    delegate->applicationDidFinishLaunching();
    // One item of the main queue, so that what the controller submits meanwhile runs after its start.
    dispatch_async(dispatch_get_main_queue(), ^{
      @autoreleasepool {
          [self showWindow];
      }
    });
}

- (void)showWindow {
    OrvaneViewController* const viewController = [[OrvaneViewController alloc] init];
    const auto controller = makeViewController();
    viewController->controller = controller;
    window = [self makeWindowOf:viewController];
    platform::MainWindowControls& controls = viewController->mainView.controls;
    controls.window = platform::makeWindowControl(window, presence);
    platform::installMainMenu({
        .program = windowTitle,
        .quitTitle = [controller] { return controller->quitCommandTitle(); },
        .languageTag = [controller] { return controller->languageTag(); },
    });

    controller->connectOutlets(controls);
    controller->awakeFromNib();
    controller->viewDidLoad();
    controller->viewWillAppear();
    platform::retitleMainMenu(); // the language is chosen by now
    [window makeKeyAndOrderFront:nil];
    presence.show();
    controller->viewDidAppear();
}

- (NSWindow*)makeWindowOf:(OrvaneViewController*)viewController {
    NSWindow* const made = [NSWindow windowWithContentViewController:viewController];
    made.styleMask = NSWindowStyleMaskTitled | NSWindowStyleMaskClosable | NSWindowStyleMaskMiniaturizable;
    made.title = platform::toNSString(windowTitle);
    // The background is the same in light and dark mode, so its controls are.
    made.appearance = [NSAppearance appearanceNamed:NSAppearanceNameAqua];
    made.releasedWhenClosed = NO;
    made.restorable = NO;
    made.initialFirstResponder = viewController->mainView.initialFirstResponder;
    [made center];
    return made;
}

- (BOOL)applicationShouldHandleReopen:(NSApplication*)sender hasVisibleWindows:(BOOL)hasVisibleWindows {
    if (hasVisibleWindows) {
        return YES;
    }
    if (presence.mayComeBack(isAlertOpen())) {
        [window makeKeyAndOrderFront:nil];
    }
    return NO;
}

- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)application {
    return YES;
}

- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)sender {
    if (isAlertOpen()) {
        return NSTerminateCancel;
    }
    return delegate->applicationShouldTerminate() == platform::TerminateReply::now ? NSTerminateNow
                                                                                   : NSTerminateCancel;
}

- (void)applicationWillTerminate:(NSNotification*)notification {
    delegate->applicationWillTerminate();
    // The rest of a termination runs destructors beside threads that still work.
    platform::endProcess(0);
}

@end

namespace orvane::platform {

void applicationMain(int argumentCount, char** arguments, const std::string& windowTitle,
                     ApplicationDelegate& delegate, const ViewControllerFactory& makeViewController) {
    // The application holds its delegate weakly; this one is needed as long as the process lives.
    static OrvaneApplicationDelegate* const adapter = [[OrvaneApplicationDelegate alloc] init];
    adapter->delegate = &delegate;
    adapter->makeViewController = makeViewController;
    adapter->windowTitle = windowTitle;

    // A word among the arguments is the engine's, not a document that AppKit should open and then report as
    // unknown.
    [NSUserDefaults.standardUserDefaults registerDefaults:@{@"NSTreatUnknownArgumentsAsOpen" : @"NO"}];
    NSApplication* const application = NSApplication.sharedApplication;
    application.activationPolicy = NSApplicationActivationPolicyRegular;
    application.delegate = adapter;
    NSApplicationMain(argumentCount, const_cast<const char**>(arguments));
}

std::vector<std::string> processArguments() {
    @autoreleasepool {
        return fromNSArray(NSProcessInfo.processInfo.arguments);
    }
}

void activateIgnoringOtherApps(bool ignoringOtherApps) {
    [NSApplication.sharedApplication activateIgnoringOtherApps:ignoringOtherApps];
}

void endProcess(int status) {
    // Every printed line is with the system already; see printLine.
    _exit(status);
}

} // namespace orvane::platform
