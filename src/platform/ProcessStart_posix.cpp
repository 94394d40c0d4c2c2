#include "platform/ProcessStart.h"

#include "platform/IgnoredSignal.h"
#include "platform/ProgrammingError.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane::platform {

namespace {

constexpr mode_t kForeignWritePermission = S_IWGRP | S_IWOTH;

/// open(2) takes the lowest number that is free, so each descriptor is looked at in its turn.
void openStandardStreams() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        const bool isClosed = ::fcntl(descriptor, F_GETFD) < 0 && errno == EBADF;
        if (isClosed && ::open("/dev/null", O_RDWR) != descriptor) {
            unexpectedError("a standard stream is closed and /dev/null cannot be opened in its place");
        }
    }
}

/// The rest of the user's umask stays.
void keepOthersFromWriting() {
    const mode_t inherited = ::umask(0777);
    ::umask(inherited | kForeignWritePermission);
}

} // namespace

void prepareProcess() {
    openStandardStreams();
    ignoreSignal(SIGPIPE);
    ignoreSignal(SIGXFSZ);
    keepOthersFromWriting();
}

} // namespace orvane::platform
