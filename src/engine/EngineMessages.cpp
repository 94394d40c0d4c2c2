#include "app/ViewController.h"

#include "engine/MessageNumber.h"
#include "model/TextIdentifiers.h"
#include "platform/Alert.h"
#include "platform/Process.h"
#include "platform/ProgrammingError.h"
#include "sender/EngineMessageSender.h"

#include <string_view>

namespace orvane {

namespace {

// The codes of an end-of-run message.
constexpr std::int64_t kEndedWellCode = 0;
constexpr std::int64_t kMachineRestartCode = 1;
constexpr std::int64_t kStoppedCode = 3;

/// A restart question begins with the number of the step to restart at.
constexpr std::size_t kStepDigits = 2;

} // namespace

void ViewController::onCopyData(std::int32_t msgType, const std::string& text) {
    switch (static_cast<EngineMessageType>(msgType)) {
    case EngineMessageType::progress:
        if (const auto position = messageNumber(text)) {
            setProgression(*position);
        }
        break;
    case EngineMessageType::step:
        showStep(text);
        break;
    case EngineMessageType::network:
        showNetworkCondition(messageNumber(text));
        break;
    case EngineMessageType::end:
        endRun(text);
        break;
    case EngineMessageType::error:
        showError(text);
        break;
    case EngineMessageType::restart:
        restartAtStep(text);
        break;
    case EngineMessageType::cancelButton:
        setCancelButtonState(messageNumber(text));
        break;
    default:
        break; // a later engine may say more than this program knows
    }
}

void ViewController::showNetworkCondition(std::optional<std::int64_t> condition) {
    if (condition == 0) {
        showError("");
    } else if (condition == 1) {
        showError(loadTranslatedString(text::kNetworkUnavailable));
    } else if (condition == 2) {
        showError(loadTranslatedString(text::kMeteredNetwork));
    }
}

void ViewController::endRun(const std::string& codeOrMessage) {
    const auto code = messageNumber(codeOrMessage);
    if (!code) {
        showFatalErrorAndQuit(codeOrMessage);
    } else if (*code == kEndedWellCode) {
        platform::endProcess(0);
    } else if (*code == kMachineRestartCode) {
        showError(loadTranslatedString(forMode(text::kEndedWell)));
    } else if (*code == kStoppedCode) {
        platform::endProcess(2);
    }
}

void ViewController::setCancelButtonState(std::optional<std::int64_t> state) {
    if (state == 0 || state == 1) {
        const auto button = cancelButton.lock();
        if (!button) {
            programmingError("the Cancel button is gone");
        }
        button->setEnabled(state == 1);
    }
}

void ViewController::restartAtStep(const std::string& stepAndQuestion) {
    if (stepAndQuestion.size() < kStepDigits) {
        programmingError("a restart question is shorter than its step number");
    }
    const platform::Alert question{
        .messageText = stepAndQuestion.substr(kStepDigits),
        .buttonTitles = {loadTranslatedString(text::kYes), loadTranslatedString(text::kNo)}};
    if (question.runModal() == platform::kAlertSecondButtonReturn) {
        platform::endProcess(2);
    }
    const auto step = messageNumber(std::string_view(stepAndQuestion).substr(0, kStepDigits));
    if (!step) {
        programmingError("a restart question does not begin with a step number");
    }
    lastOrvaneStep = *step;
    if (const auto process = orvaneProcessHandle.load()) {
        process->interrupt();
    }
    spawnOrvane();
}

} // namespace orvane
