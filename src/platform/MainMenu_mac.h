#pragma once

#import <AppKit/AppKit.h>

#include <functional>
#include <string>

namespace orvane::platform {

/// Gives the application its menu bar: Hide, Quit and the standard Edit commands. `quitTitle` is asked each
/// time the application menu opens. Main thread.
void installMainMenu(std::function<std::string()> quitTitle);

} // namespace orvane::platform
