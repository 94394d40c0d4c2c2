#pragma once

#import <AppKit/AppKit.h>

#include "platform/Controls.h"

namespace orvane::platform {

class WindowPresence;

/// The view with its four controls, laid out and ready for a window of fixed size.
struct MainView {
    NSView* view;
    MainWindowControls controls; ///< but for the window, which does not exist yet
    NSView* initialFirstResponder;
};

/// `cancelTarget` is sent `cancelAction` when the Cancel button is pressed. Main thread.
MainView makeMainView(id cancelTarget, SEL cancelAction);

/// `presence`, which must outlive the control, is told when the window is ordered out.
std::shared_ptr<Window> makeWindowControl(NSWindow* window, WindowPresence& presence);

} // namespace orvane::platform
