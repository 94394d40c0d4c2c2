#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orvane::platform {

enum class AlertStyle { warning, critical };

inline constexpr std::int64_t kAlertFirstButtonReturn = 1000;
inline constexpr std::int64_t kAlertSecondButtonReturn = 1001;

/// A modal question. Texts are plain: markup is shown as it stands.
struct Alert {
    std::string messageText;
    std::vector<std::string> buttonTitles; ///< at least one; the first is the default button
    AlertStyle style = AlertStyle::warning;

    /// Shows the alert until one of its buttons is pressed (nothing else closes it) and returns 1000 plus the
    /// button's index. From any thread: called from another than the main thread it runs on the main thread,
    /// as an item of the main queue, and the caller waits.
    std::int64_t runModal() const;
};

} // namespace orvane::platform
