#include "app/ViewController.h"

#include "engine/MachPort.h"
#include "log/Logger.h"
#include "model/TextIdentifiers.h"
#include "platform/Alert.h"
#include "platform/MessagePort.h"
#include "platform/ProgrammingError.h"
#include "platform/Queue.h"
#include "platform/Utf8.h"
#include "platform/WindowUpdates.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace orvane {

namespace {

/// Opaque, hexadecimal 005F8A.
constexpr platform::Color BACKGROUND_COLOR{
    .red = 0.0, .green = 95.0 / 255, .blue = 138.0 / 255, .alpha = 1.0};
constexpr platform::Color kTextColor{.red = 1.0, .green = 1.0, .blue = 1.0, .alpha = 1.0};
constexpr double kStepTextSize = 16;
constexpr double kErrorTextSize = 12;
constexpr std::int64_t kServiceNameSuffixLength = 10;

/// Hands over each engine message, one after the other, for as long as the process lives. An engine may speak
/// faster than the window follows: then the loop waits, the channel fills up, and the engine's sends wait
/// too.
void receiveEngineMessages(const std::weak_ptr<ViewController>& weakController) {
    const auto controller = weakController.lock();
    if (!controller) {
        return;
    }
    while (true) {
        std::array<char, platform::kMessageTextSize> buffer{};
        std::int32_t msgType = 0;
        if (waitMachPortMessage(controller->machPort, &msgType, buffer.data(), buffer.size()) != 0) {
            continue;
        }
        // The sender may have left no terminating NUL.
        const std::string text(buffer.data(), strnlen(buffer.data(), buffer.size()));
        if (!isValidUtf8(text)) {
            invalidInput("an engine message is not valid UTF-8");
        }
        controller->onCopyData(msgType, text);
        platform::waitForRoom();
    }
}

} // namespace

ViewController::ViewController(const Deployment& deployment) : deployment_(deployment) {}

ViewController::~ViewController() = default;

void ViewController::connectOutlets(const platform::MainWindowControls& controls) {
    cancelButton = controls.cancelButton;
    textError = controls.textError;
    textStep = controls.textStep;
    progressBar = controls.progressBar;
    window_ = controls.window;
    layer_ = controls.layer;
}

void ViewController::awakeFromNib() {
    if (const auto layer = layer_.lock()) {
        layer->setBackgroundColor(BACKGROUND_COLOR);
    }
}

void ViewController::viewDidLoad() {
    // Queued, so that it finds the mode and the language, which are chosen before the window appears.
    platform::mainQueueAsync([self = shared_from_this()] { self->applyStyle(); });

    machPortName = deployment_.serviceNamePrefix + RandomString(kServiceNameSuffixLength);
    machPort = initializeMachPort(machPortName.c_str());
    if (machPort >= 0) {
        platform::utilityQueueAsync([weakSelf = weak_from_this()] { receiveEngineMessages(weakSelf); });
    }
}

void ViewController::applyStyle() {
    setCancelButtonText(loadTranslatedString(text::kCancel));

    const auto step = textStep.lock();
    const auto error = textError.lock();
    if (!step || !error) {
        programmingError("a text of the main window is gone");
    }
    step->setStringValue(loadTranslatedString(forMode(text::kPreparing)));
    step->setTextColor(kTextColor);
    step->setSystemFontOfSize(kStepTextSize);
    error->setStringValue("");
    error->setTextColor(kTextColor);
    error->setSystemFontOfSize(kErrorTextSize);
}

void ViewController::viewWillAppear() {
    // The engine is handed our options; without any it is handed our own path, which it ignores.
    std::vector<std::string> arguments = platform::processArguments();
    if (arguments.size() >= 2) {
        arguments.erase(arguments.begin());
    }
    uninstall = std::find(arguments.begin(), arguments.end(), "--uninstall") != arguments.end();
    orvaneArguments.store(std::move(arguments));

    const auto runLogger = std::make_shared<Logger>(deployment_);
    logger.store(runLogger);
    runLogger->OpenProgramLog(deployment_.logRoot / (uninstall ? "Uninstallations" : "Installations"));

    initializeLocale();
    if (uninstall) {
        askForUninstallationConsent();
    }
}

void ViewController::askForUninstallationConsent() {
    const platform::Alert question{
        .messageText = loadTranslatedString(text::kUninstallationConsent),
        .buttonTitles = {loadTranslatedString(text::kNo), loadTranslatedString(text::kYes)}};
    const platform::MainQueueHold hold; // the start is an item of the main queue
    if (question.runModal() == platform::kAlertFirstButtonReturn) {
        writeProgramLog("User didn't want to start the procedure");
        platform::endProcess(2);
    }
}

std::string ViewController::quitCommandTitle() { return loadTranslatedString(text::kQuit); }

void ViewController::writeProgramLog(const std::string& text) const {
    orvane::writeProgramLog(logger.load(), text);
}

} // namespace orvane
