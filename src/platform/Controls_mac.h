#pragma once

#import <AppKit/AppKit.h>

#include "platform/Controls.h"

#include <functional>

namespace orvane::platform {

/// The view with its four controls, laid out and ready for a window of fixed size.
struct MainView {
    NSView* view;
    MainWindowControls controls; ///< but for the window, which does not exist yet
};

/// `cancelTarget` is sent `cancelAction` when the Cancel button is pressed. Main thread.
MainView makeMainView(id cancelTarget, SEL cancelAction);

std::shared_ptr<Window> makeWindowControl(NSWindow* window);

} // namespace orvane::platform
