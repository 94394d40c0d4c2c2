#pragma once

namespace orvane::platform {

/// Whether the user may bring the main window back, which is asked where a dock can do so. Main thread.
class WindowPresence {
public:
    /// The start-up has shown the window. From now on the user may close it and bring it back.
    void show() { isShown_ = true; }

    /// The program has taken the window off the screen, for good.
    void withdraw() { isWithdrawn_ = true; }

    /// Not before the start-up has shown it, not after the program has withdrawn it, and not while an alert
    /// is open, which may be the question whether to go on at all.
    bool mayComeBack(bool isAlertOpen) const { return isShown_ && !isWithdrawn_ && !isAlertOpen; }

private:
    bool isShown_ = false;
    bool isWithdrawn_ = false;
};

} // namespace orvane::platform
