#include "platform/Application.h"

#include "platform/Controls_mac.h"
#include "platform/Foundation_mac.h"
#include "platform/MainMenu_mac.h"

#import <AppKit/AppKit.h>

#include <dispatch/dispatch.h>
#include <unistd.h>
#include <utility>

using namespace orvane;

/// Calls the portable controller from the real life cycle of a view. There is no nib: what would come from
/// one is made in `loadView`, which therefore also stands for having awoken from it.
@interface OrvaneViewController : NSViewController {
  @public
    std::shared_ptr<platform::ViewControllerBase> controller;
    platform::MainWindowControls controls;
    bool hasBegunToAppear;
    bool hasAppeared;
}
@end

@implementation OrvaneViewController

- (void)loadView {
    const platform::MainView mainView = platform::makeMainView(self, @selector(cancelButtonClicked:));
    self.view = mainView.view;
    controls = mainView.controls;
    controller->connectOutlets(controls);
    controller->awakeFromNib();
}

- (void)viewDidLoad {
    [super viewDidLoad];
    controller->viewDidLoad();
}

- (void)viewWillAppear {
    [super viewWillAppear];
    if (!std::exchange(hasBegunToAppear, true)) {
        controls.window = platform::makeWindowControl(self.view.window);
        controller->connectOutlets(controls);
        controller->viewWillAppear();
    }
}

- (void)viewDidAppear {
    [super viewDidAppear];
    if (!std::exchange(hasAppeared, true)) {
        controller->viewDidAppear();
    }
}

- (void)cancelButtonClicked:(id)sender {
    controller->cancelButtonClicked();
}

@end

@interface OrvaneApplicationDelegate : NSObject <NSApplicationDelegate> {
  @public
    platform::ApplicationDelegate* delegate;
    platform::ViewControllerFactory makeViewController;
    std::string windowTitle;
    NSWindow* window;
}
@end

@implementation OrvaneApplicationDelegate

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
    delegate->applicationDidFinishLaunching();
    // One item of the main queue, so that what the controller submits meanwhile runs after its start.
    dispatch_async(dispatch_get_main_queue(), ^{
      [self showWindow];
    });
}

- (void)showWindow {
    OrvaneViewController* const viewController = [[OrvaneViewController alloc] init];
    const auto controller = makeViewController();
    viewController->controller = controller;
    platform::installMainMenu([controller] { return controller->quitCommandTitle(); });

    window = [NSWindow windowWithContentViewController:viewController];
    window.styleMask = NSWindowStyleMaskTitled | NSWindowStyleMaskClosable | NSWindowStyleMaskMiniaturizable;
    window.title = platform::toNSString(windowTitle);
    window.releasedWhenClosed = NO;
    [window center];
    [window makeKeyAndOrderFront:nil];
}

- (BOOL)applicationShouldHandleReopen:(NSApplication*)sender hasVisibleWindows:(BOOL)hasVisibleWindows {
    if (!hasVisibleWindows) {
        [window makeKeyAndOrderFront:nil];
    }
    return YES;
}

- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)sender {
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
