#include "engine/EngineMessages.h"

#include "model/Presentation.h"
#include "platform/Alert.h"
#include "platform/Application.h"
#include "platform/ProgrammingError.h"
#include "platform/WindowUpdates.h"
#include "sender/EngineMessageSender.h"
#include "sender/MessageNumber.h"

#include <optional>
#include <string_view>

namespace orvane {

namespace {

// The codes of an end-of-run message.
constexpr std::int64_t kEndedWellCode = 0;
constexpr std::int64_t kMachineRestartCode = 1;
constexpr std::int64_t kStoppedCode = 3;

/// A restart question begins with the number of the step to restart at.
constexpr std::size_t kStepDigits = 2;

std::int64_t runHoldingMainQueue(const platform::Alert& question) {
    const platform::MainQueueHold hold;
    return question.runModal();
}

void showNetworkCondition(std::optional<std::int64_t> condition, Presentation& presentation) {
    if (condition == 0) {
        presentation.showError("");
    } else if (condition == 1) {
        presentation.showError(presentation.loadTranslatedString(text::kNetworkUnavailable));
    } else if (condition == 2) {
        presentation.showError(presentation.loadTranslatedString(text::kMeteredNetwork));
    }
}

void endRun(const std::string& codeOrMessage, Presentation& presentation) {
    const auto code = messageNumber(codeOrMessage);
    if (!code) {
        presentation.showFatalErrorAndQuit(codeOrMessage);
    } else if (*code == kEndedWellCode) {
        platform::endProcess(0);
    } else if (*code == kMachineRestartCode) {
        presentation.showError(presentation.loadTranslatedString(presentation.forMode(text::kEndedWell)));
    } else if (*code == kStoppedCode) {
        platform::endProcess(2);
    }
}

void setCancelButtonState(std::optional<std::int64_t> state, EngineMessagesHost& host) {
    if (state == 0 || state == 1) {
        host.setCancelButtonEnabled(state == 1);
    }
}

void restartAtStep(const std::string& stepAndQuestion, EngineMessagesHost& host) {
    const Presentation& presentation = host.presentation();
    if (stepAndQuestion.size() < kStepDigits) {
        invalidInput("a restart question is shorter than its step number");
    }
    const platform::Alert question{.messageText = stepAndQuestion.substr(kStepDigits),
                                   .buttonTitles = {presentation.loadTranslatedString(text::kYes),
                                                    presentation.loadTranslatedString(text::kNo)}};
    if (runHoldingMainQueue(question) == platform::kAlertSecondButtonReturn) {
        platform::endProcess(2);
    }
    const auto step = messageNumber(std::string_view(stepAndQuestion).substr(0, kStepDigits));
    if (!step) {
        invalidInput("a restart question does not begin with a step number");
    }
    host.setLastOrvaneStep(*step);
    host.interruptOrvane();
    host.spawnOrvane();
}

} // namespace

void actOnEngineMessage(std::int32_t msgType, const std::string& text, EngineMessagesHost& host) {
    Presentation& presentation = host.presentation();
    switch (static_cast<EngineMessageType>(msgType)) {
    case EngineMessageType::progress:
        if (const auto position = messageNumber(text)) {
            presentation.setProgression(*position);
        }
        break;
    case EngineMessageType::step:
        presentation.showStep(text);
        break;
    case EngineMessageType::network:
        showNetworkCondition(messageNumber(text), presentation);
        break;
    case EngineMessageType::end:
        endRun(text, presentation);
        break;
    case EngineMessageType::error:
        presentation.showError(text);
        break;
    case EngineMessageType::restart:
        restartAtStep(text, host);
        break;
    case EngineMessageType::cancelButton:
        setCancelButtonState(messageNumber(text), host);
        break;
    default:
        break; // a later engine may say more than this program knows
    }
}

} // namespace orvane
