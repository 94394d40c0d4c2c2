#include "platform/MainMenu_mac.h"

#include "platform/CommandTitles.h"
#include "platform/Foundation_mac.h"

#include <utility>

using orvane::platform::toNSString;

/// The menu bar, whose titles follow the run's language.
@interface OrvaneMainMenu : NSObject <NSMenuDelegate> {
@public
    orvane::platform::MenuTexts texts;
}

- (void)install;
- (void)retitle;

@end

@implementation OrvaneMainMenu {
    NSMenuItem* about;
    NSMenuItem* hide;
    NSMenuItem* hideOthers;
    NSMenuItem* showAll;
    NSMenuItem* quit;
    NSMenuItem* window;
    NSMenuItem* minimise;
    NSMenuItem* close;
}

- (void)install {
    NSMenu* const bar = [[NSMenu alloc] initWithTitle:@""];
    NSMenu* const application = [self addMenuTo:bar].submenu;
    about = [self add:@selector(orderFrontStandardAboutPanel:) key:@"" to:application];
    [application addItem:[NSMenuItem separatorItem]];
    hide = [self add:@selector(hide:) key:@"h" to:application];
    hideOthers = [self add:@selector(hideOtherApplications:) key:@"h" to:application];
    hideOthers.keyEquivalentModifierMask = NSEventModifierFlagCommand | NSEventModifierFlagOption;
    showAll = [self add:@selector(unhideAllApplications:) key:@"" to:application];
    [application addItem:[NSMenuItem separatorItem]];
    quit = [self add:@selector(terminate:) key:@"q" to:application];

    window = [self addMenuTo:bar];
    minimise = [self add:@selector(performMiniaturize:) key:@"m" to:window.submenu];
    close = [self add:@selector(performClose:) key:@"w" to:window.submenu];

    [self retitle];
    NSApplication.sharedApplication.mainMenu = bar;
    NSApplication.sharedApplication.windowsMenu = window.submenu;
}

- (NSMenuItem*)addMenuTo:(NSMenu*)bar {
    NSMenuItem* const item = [bar addItemWithTitle:@"" action:nil keyEquivalent:@""];
    item.submenu = [[NSMenu alloc] initWithTitle:@""];
    item.submenu.delegate = self;
    return item;
}

- (NSMenuItem*)add:(SEL)action key:(NSString*)key to:(NSMenu*)menu {
    return [menu addItemWithTitle:@"" action:action keyEquivalent:key];
}

- (void)retitle {
    const auto titles = orvane::platform::commandTitles(texts.languageTag(), texts.program);
    about.title = toNSString(titles.about);
    hide.title = toNSString(titles.hide);
    hideOthers.title = toNSString(titles.hideOthers);
    showAll.title = toNSString(titles.showAll);
    quit.title = toNSString(texts.quitTitle());
    window.title = toNSString(titles.window);
    window.submenu.title = window.title; // the one that the menu bar shows
    minimise.title = toNSString(titles.minimise);
    close.title = toNSString(titles.close);
}

- (void)menuNeedsUpdate:(NSMenu*)menu {
    [self retitle];
}

@end

namespace orvane::platform {

namespace {

/// A menu holds its delegate weakly; this one lives as long as the application.
OrvaneMainMenu* mainMenu() {
    static OrvaneMainMenu* const menu = [[OrvaneMainMenu alloc] init];
    return menu;
}

} // namespace

void installMainMenu(MenuTexts texts) {
    mainMenu()->texts = std::move(texts);
    [mainMenu() install];
}

void retitleMainMenu() { [mainMenu() retitle]; }

} // namespace orvane::platform
