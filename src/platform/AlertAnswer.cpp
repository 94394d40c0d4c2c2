#include "platform/AlertAnswer.h"

#include "platform/Alert.h"
#include "platform/ProgrammingError.h"

namespace orvane::platform {

std::int64_t askUntilAnswered(std::size_t buttonCount, const std::function<std::int64_t()>& show,
                              const std::function<void()>& awaitLaterTurn) {
    if (buttonCount == 0) {
        programmingError("an alert without a button");
    }
    const auto firstNonButton = kAlertFirstButtonReturn + static_cast<std::int64_t>(buttonCount);
    for (;;) {
        const std::int64_t response = show();
        if (response >= kAlertFirstButtonReturn && response < firstNonButton) {
            return response;
        }
        awaitLaterTurn();
    }
}

} // namespace orvane::platform
