#include "app/ViewController.h"

#include "log/Logger.h"
#include "platform/Alert.h"
#include "platform/ProgrammingError.h"
#include "platform/Queue.h"

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
    platform::mainQueueAsync(
        [self = shared_from_this(), step] { required(self->textStep)->setStringValue(step); });
}

void ViewController::showError(const std::string& err) {
    platform::mainQueueAsync(
        [self = shared_from_this(), err] { required(self->textError)->setStringValue(err); });
}

void ViewController::setProgression(std::int64_t pos) {
    platform::mainQueueAsync([self = shared_from_this(), pos] {
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
    platform::mainQueueAsync(
        [self = shared_from_this(), text] { required(self->cancelButton)->setTitle(text); });
}

void ViewController::showFatalErrorAndQuit(const std::string& err) {
    platform::mainQueueAsync([self = shared_from_this(), err] {
        if (const auto window = self->window_.lock()) {
            window->orderOut();
        }
        const platform::Alert alert{
            .messageText = err, .buttonTitles = {"OK"}, .style = platform::AlertStyle::critical};
        alert.runModal();
        platform::endProcess(1);
    });
    // On the main thread this goes out before the alert appears, elsewhere beside it.
    if (const auto runLogger = logger.load()) {
        runLogger->SendCrashToOrvaneServer();
    }
}

} // namespace orvane
