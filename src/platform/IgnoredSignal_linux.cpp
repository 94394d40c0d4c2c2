#include "platform/IgnoredSignal.h"

#include <csignal>

namespace orvane::platform {

/// `Process` gives its children the default actions (posix_spawnattr_setsigdefault).
void ignoreSignal(int number) { std::signal(number, SIG_IGN); }

} // namespace orvane::platform
