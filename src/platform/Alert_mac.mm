#include "platform/Alert.h"

#include "platform/AlertAnswer.h"
#include "platform/Foundation_mac.h"
#include "platform/Queue_mac.h"

#import <AppKit/AppKit.h>

namespace orvane::platform {

namespace {

constexpr NSTimeInterval kTurn = 0.05;

std::int64_t showOnMainThread(const Alert& alert) {
    NSModalResponse response = 0;
    runOnMainThreadAndWait([&alert, &response] {
        @autoreleasepool {
            NSAlert* const panel = [[NSAlert alloc] init];
            panel.messageText = toNSString(alert.messageText);
            panel.alertStyle =
                alert.style == AlertStyle::critical ? NSAlertStyleCritical : NSAlertStyleWarning;
            for (const std::string& title : alert.buttonTitles) {
                [panel addButtonWithTitle:toNSString(title)];
            }
            response = [panel runModal];
        }
    });
    return response;
}

/// AppKit shows no alert while it commits a transaction, and answers at once instead.
void awaitLaterTurn() {
    @autoreleasepool {
        NSDate* const end = [NSDate dateWithTimeIntervalSinceNow:kTurn];
        if (NSThread.isMainThread) {
            [NSRunLoop.currentRunLoop runUntilDate:end];
        } else {
            [NSThread sleepUntilDate:end];
        }
    }
}

} // namespace

std::int64_t Alert::runModal() const {
    return askUntilAnswered(
        buttonTitles.size(), [this] { return showOnMainThread(*this); }, awaitLaterTurn);
}

} // namespace orvane::platform
