// What a Mac user double-clicks: asks once for administrator rights, starts the program inside this bundle
// with them, in the user's session and language, and ends.

#include "launcher/AdministratorRequest.h"
#include "platform/Foundation_mac.h"
#include "platform/Locale.h"

#import <AppKit/AppKit.h>

#include <algorithm>

using namespace orvane;

namespace {

NSString* const kProgram = @"Contents/Helpers/OrvaneBootstrap.app/Contents/MacOS/OrvaneBootstrap";

std::vector<std::string> givenArguments() {
    std::vector<std::string> arguments = platform::fromNSArray(NSProcessInfo.processInfo.arguments);
    arguments.erase(arguments.begin());
    return arguments;
}

void show(const std::string& text) {
    NSAlert* const alert = [[NSAlert alloc] init];
    alert.alertStyle = NSAlertStyleCritical;
    alert.messageText = platform::toNSString(text);
    [alert addButtonWithTitle:@"OK"];
    [NSApplication.sharedApplication activateIgnoringOtherApps:YES];
    [alert runModal];
}

} // namespace

int main() {
    @autoreleasepool {
        NSApplication.sharedApplication.activationPolicy = NSApplicationActivationPolicyRegular;
        const std::vector<std::string> languages = platform::preferredLanguages();
        const launcher::Language language = launcher::languageFor(languages);
        const std::vector<std::string> arguments = givenArguments();
        const bool uninstall = std::ranges::find(arguments, "--uninstall") != arguments.end();

        NSString* const program = [NSBundle.mainBundle.bundlePath stringByAppendingPathComponent:kProgram];
        const std::string command =
            launcher::startCommand(platform::fromNSString(program), arguments, languages);
        const std::string script =
            launcher::administratorScript(command, launcher::rightsPrompt(language, uninstall));
        NSDictionary<NSString*, id>* error = nil;
        NSAppleScript* const request = [[NSAppleScript alloc] initWithSource:platform::toNSString(script)];
        if ([request executeAndReturnError:&error] == nil) {
            show(launcher::rightsRefused(language, uninstall));
            return 1;
        }
        return 0;
    }
}
