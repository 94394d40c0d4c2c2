#include "demo/Interruption.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <system_error>
#include <unistd.h>

namespace orvane::demo {
namespace {

// The only thing a signal handler can reach.
volatile sig_atomic_t writeEnd = -1;

void noteSignal(int /*signal*/) {
    const int savedError = errno;
    // The pipe is never full in earnest: one byte in it says all that there is to say.
    [[maybe_unused]] const ssize_t written = write(static_cast<int>(writeEnd), "", 1);
    errno = savedError;
}

[[noreturn]] void fail(const char* what) { throw std::system_error(errno, std::generic_category(), what); }

} // namespace

Interruption::Interruption() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        fail("pipe");
    }
    for (const int end : ends) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
        fcntl(end, F_SETFL, O_NONBLOCK);
    }
    readEnd_ = ends[0];
    writeEnd = ends[1];

    struct sigaction action {};
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART;
    if (sigaction(SIGINT, &action, nullptr) != 0) {
        fail("sigaction");
    }
}

Interruption::~Interruption() {
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    sigaction(SIGINT, &action, nullptr);
    close(readEnd_);
    close(static_cast<int>(writeEnd));
}

bool Interruption::arrivesWithin(std::chrono::milliseconds limit) const {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    for (;;) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        pollfd descriptor{readEnd_, POLLIN, 0};
        const int ready = poll(&descriptor, 1, left.count() > 0 ? static_cast<int>(left.count()) : 0);
        if (ready >= 0) {
            return ready > 0;
        }
        // poll(2) is interrupted by the very signal it waits for; the next round sees the pipe.
        if (errno != EINTR) {
            fail("poll");
        }
    }
}

} // namespace orvane::demo
