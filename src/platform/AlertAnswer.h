#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace orvane::platform {

/// Shows an alert of `buttonCount` buttons by calling `show` until the result is one of them: 1000 plus the
/// button's index. Any other result means that the alert was not shown, or was taken away without an answer,
/// and never counts as one: `awaitLaterTurn` is called, then the alert is shown again. An alert without a
/// button is a programming error.
std::int64_t askUntilAnswered(std::size_t buttonCount, const std::function<std::int64_t()>& show,
                              const std::function<void()>& awaitLaterTurn);

} // namespace orvane::platform
