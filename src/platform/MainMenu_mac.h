#pragma once

#import <AppKit/AppKit.h>

#include <functional>
#include <string>

namespace orvane::platform {

/// What the menu bar says. The functions are called on the main thread, each time a menu is about to open.
struct MenuTexts {
    std::string program;
    std::function<std::string()> quitTitle;
    std::function<std::string()> languageTag;
};

/// Gives the application its menu bar: About, Hide and Quit, and the menu of the window. There is no Edit
/// menu, since nothing can be edited or selected. Main thread.
void installMainMenu(MenuTexts texts);

/// After the language was chosen. Main thread.
void retitleMainMenu();

} // namespace orvane::platform
