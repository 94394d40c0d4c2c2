#include "app/ViewController.h"

#include "log/Logger.h"
#include "platform/Alert.h"
#include "platform/ProgrammingError.h"
#include "platform/Queue.h"
#include "platform/WindowUpdates.h"

namespace orvane {

namespace {

/// A control of the window, which must still be there.
template <typename Control>
std::shared_ptr<Control> required(const std::weak_ptr<Control>& outlet) {
    auto control = outlet.lock();
    if (!control) {
        programmingError("a control of the main window is gone");
    }
    return control;
}

} // namespace

void ViewController::showStep(const std::string& step) {
    platform::submitUpdate(
        &textStep, [self = shared_from_this(), step] { required(self->textStep)->setStringValue(step); });
}

void ViewController::showError(const std::string& err) {
    platform::submitUpdate(
        &textError, [self = shared_from_this(), err] { required(self->textError)->setStringValue(err); });
}

void ViewController::setProgression(std::int64_t pos) {
    platform::submitUpdate(&progressBar, [self = shared_from_this(), pos] {
        required(self->progressBar)->setDoubleValue(static_cast<double>(pos));
    });
}

void ViewController::showDownloadProgress(double percentage) {
    const auto bar = progressBar.lock();
    if (!bar) {
        programmingError("the progress bar is gone");
    }
    bar->setDoubleValue(percentage);
}

void ViewController::setCancelButtonEnabled(bool enabled) {
    const auto button = cancelButton.lock();
    if (!button) {
        programmingError("the Cancel button is gone");
    }
    button->setEnabled(enabled);
}

void ViewController::setCancelButtonText(const std::string& text) {
    platform::submitUpdate(
        &cancelButton, [self = shared_from_this(), text] { required(self->cancelButton)->setTitle(text); });
}

void ViewController::showFatalErrorAndQuit(const std::string& err) {
    // The first alert's answer ends the process, so a further one would never be seen.
    if (!isFatalErrorRaised_.exchange(true)) {
        submitFatalAlert(err);
    }
    // On the main thread this goes out before the alert appears, elsewhere beside it.
    if (const auto runLogger = logger.load()) {
        displayWindowIfOnMainThread();
        runLogger->SendCrashToOrvaneServer();
    }
}

/// So that the window shows its latest texts while a crash report blocks the main thread.
void ViewController::displayWindowIfOnMainThread() const {
    const auto window = window_.lock();
    if (window && platform::isMainThread()) {
        window->displayIfNeeded();
    }
}

void ViewController::submitFatalAlert(const std::string& err) {
    const auto hold = std::make_shared<platform::MainQueueHold>();
    platform::mainQueueAsync([self = shared_from_this(), err, hold] {
        if (const auto window = self->window_.lock()) {
            window->orderOut();
        }
        const platform::Alert alert{
            .messageText = err, .buttonTitles = {"OK"}, .style = platform::AlertStyle::critical};
        alert.runModal();
        platform::endProcess(1);
    });
}

} // namespace orvane
