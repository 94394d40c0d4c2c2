#include "app/AppDelegate.h"

#include "platform/Alert.h"

#include <cinttypes>
#include <cstdio>

namespace orvane {

platform::TerminateReply AppDelegate::applicationShouldTerminate() {
    const platform::Alert question{.messageText = "Voulez-vous quitter l'installation?",
                                   .buttonTitles = {"NO", "YES"}};
    const std::int64_t returnCode = question.runModal();
    std::printf("returnCode:  %" PRId64 "\n", returnCode);
    return returnCode == platform::kAlertFirstButtonReturn ? platform::TerminateReply::cancel
                                                           : platform::TerminateReply::now;
}

} // namespace orvane
