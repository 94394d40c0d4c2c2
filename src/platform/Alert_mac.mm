#include "platform/Alert.h"

#include "platform/Foundation_mac.h"
#include "platform/Queue_mac.h"

#import <AppKit/AppKit.h>

namespace orvane::platform {

std::int64_t Alert::runModal() const {
    NSModalResponse response = 0;
    runOnMainThreadAndWait([this, &response] {
        NSAlert* const alert = [[NSAlert alloc] init];
        alert.messageText = toNSString(messageText);
        alert.alertStyle = style == AlertStyle::critical ? NSAlertStyleCritical : NSAlertStyleWarning;
        for (const std::string& title : buttonTitles) {
            [alert addButtonWithTitle:toNSString(title)];
        }
        response = [alert runModal];
    });
    return response;
}

} // namespace orvane::platform
