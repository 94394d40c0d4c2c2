#pragma once

namespace orvane::platform {

/// From now on the signal does nothing in this process; child processes start with its default action.
void ignoreSignal(int number);

} // namespace orvane::platform
