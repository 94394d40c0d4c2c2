#include "platform/MainMenu_mac.h"

#include "platform/Foundation_mac.h"

#include <utility>

/// Names the Quit command when its menu is about to open, since the language is chosen after the menu is
/// made.
@interface OrvaneApplicationMenuDelegate : NSObject <NSMenuDelegate> {
  @public
    std::function<std::string()> quitTitle;
    NSMenuItem* quitItem;
}
@end

@implementation OrvaneApplicationMenuDelegate

- (void)menuNeedsUpdate:(NSMenu*)menu {
    quitItem.title = orvane::platform::toNSString(quitTitle());
}

@end

namespace orvane::platform {

namespace {

NSMenuItem* addItem(NSMenu* menu, NSString* title, SEL action, NSString* keyEquivalent) {
    return [menu addItemWithTitle:title action:action keyEquivalent:keyEquivalent];
}

NSMenu* addMenu(NSMenu* bar, NSString* title) {
    NSMenu* const menu = [[NSMenu alloc] initWithTitle:title];
    addItem(bar, title, nil, @"").submenu = menu;
    return menu;
}

} // namespace

void installMainMenu(std::function<std::string()> quitTitle) {
    NSMenu* const bar = [[NSMenu alloc] initWithTitle:@""];
    NSMenu* const application = addMenu(bar, @"");
    addItem(application, @"Hide", @selector(hide:), @"h");
    addItem(application, @"Hide Others", @selector(hideOtherApplications:), @"");
    addItem(application, @"Show All", @selector(unhideAllApplications:), @"");

    // A menu holds its delegate weakly; this one lives as long as the application.
    static OrvaneApplicationMenuDelegate* const delegate = [[OrvaneApplicationMenuDelegate alloc] init];
    delegate->quitTitle = std::move(quitTitle);
    delegate->quitItem = addItem(application, @"Quit", @selector(terminate:), @"q");
    application.delegate = delegate;

    NSMenu* const edit = addMenu(bar, @"Edit");
    addItem(edit, @"Cut", @selector(cut:), @"x");
    addItem(edit, @"Copy", @selector(copy:), @"c");
    addItem(edit, @"Paste", @selector(paste:), @"v");
    addItem(edit, @"Select All", @selector(selectAll:), @"a");
    NSApplication.sharedApplication.mainMenu = bar;
}

} // namespace orvane::platform
