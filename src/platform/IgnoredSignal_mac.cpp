#include "platform/IgnoredSignal.h"

#include <csignal>

namespace orvane::platform {

namespace {

void doNothing(int /*number*/) {}

} // namespace

/// A handler instead of SIG_IGN: NSTask cannot be told which actions a child starts with. An ignored signal
/// stays ignored across exec(3), a caught one is reset to its default action.
void ignoreSignal(int number) {
    struct sigaction action {};
    action.sa_handler = doNothing;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    ::sigaction(number, &action, nullptr);
}

} // namespace orvane::platform
