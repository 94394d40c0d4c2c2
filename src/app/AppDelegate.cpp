#include "app/AppDelegate.h"

#include "platform/Alert.h"
#include "platform/StandardOutput.h"

#include <string>

namespace orvane {

platform::TerminateReply AppDelegate::applicationShouldTerminate() {
    const platform::Alert question{.messageText = "Voulez-vous quitter l'installation?",
                                   .buttonTitles = {"NO", "YES"}};
    const std::int64_t returnCode = question.runModal();
    platform::printLine("returnCode:  " + std::to_string(returnCode));
    return returnCode == platform::kAlertFirstButtonReturn ? platform::TerminateReply::cancel
                                                           : platform::TerminateReply::now;
}

} // namespace orvane
