#pragma once

#include <string_view>

namespace orvane {

/// Ends the process because something was broken that must always hold: prints `what` on standard error and
/// aborts. Never returns, from any thread.
[[noreturn]] void programmingError(std::string_view what);

} // namespace orvane
