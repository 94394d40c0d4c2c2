#pragma once

#include "platform/Alert.h"
#include "platform/Application.h"
#include "tests/support/Journal.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace orvane::test {

/// Thrown where the process would have ended; nothing of the program may catch it.
struct ProcessEnded {
    int status;
};

/// An alert as it was shown, and whether the program raised it on the main thread.
struct ShownAlert {
    platform::Alert alert;
    bool raisedOnMainThread;
};

/// Presses a button of an alert: looks at whatever it likes while the alert stands, and returns the response.
using AlertAnswer = std::function<std::int64_t(const platform::Alert&)>;

/// Work of the utility queue on a thread of its own. Its destruction waits for the end of the work.
class BackgroundWork {
public:
    explicit BackgroundWork(std::function<void()> work);
    ~BackgroundWork();
    BackgroundWork(BackgroundWork&&) noexcept = default;
    BackgroundWork& operator=(BackgroundWork&&) = delete;

    bool isFinished() const;

    /// Waits for the end; the status if the work ended the process.
    std::optional<int> wait();

private:
    std::future<std::optional<int>> end_;
    std::thread thread_;
};

/// The desktop half of the platform for unit tests: nothing is shown and nothing happens by itself. The
/// thread that makes it is the main thread; every operation but `journal` belongs to it. One at a time.
///
/// Everything that reaches the desktop becomes a line of the journal, together with what the controls record:
///
///     alert "Message" [No|Yes]    alert answered 1001    activate ignoring other apps    activate
///     activity "Installation in progress"    process ended 2
class TestDesktop {
public:
    static constexpr std::chrono::seconds kPatience{30};

    TestDesktop();
    ~TestDesktop();
    TestDesktop(const TestDesktop&) = delete;
    TestDesktop& operator=(const TestDesktop&) = delete;

    std::shared_ptr<Journal> journal() const;

    /// The argument vector that the program sees, its first element included.
    void setProcessArguments(std::vector<std::string> arguments);

    /// Runs the items of the main queue, those that they submit included, until it is empty. An item that
    /// ends the process ends the draining with `ProcessEnded`.
    void drainMainQueue();

    /// Runs main queue items as they come until `condition` holds. False, with the test failed, when it does
    /// not within `kPatience`.
    bool runMainQueueUntil(const std::function<bool()>& condition);

    /// Like `runMainQueueUntil`, for an item that ends the process: its status, or none with the test failed.
    std::optional<int> runMainQueueUntilProcessEnds();

    std::size_t waitingMainItems() const;
    std::size_t waitingUtilityItems() const;

    /// Starts the oldest item of the utility queue. Fails the test when there is none.
    BackgroundWork startUtilityItem();

    /// Runs the oldest item of the utility queue to its end while the main queue stands still; the status if
    /// it ended the process.
    std::optional<int> runUtilityItem();

    /// The next alert for which no answer is set yet will be answered so. An alert without an answer fails
    /// the test, and so does an answer that nobody asked for.
    void answerNextAlert(std::int64_t response);
    void answerNextAlert(AlertAnswer answer);

    std::vector<ShownAlert> shownAlerts() const;

    /// What the user does while the program is in `applicationMain`, whose window and controller it is given.
    using ApplicationScript =
        std::function<void(platform::ApplicationDelegate&, platform::ViewControllerBase&)>;
    void setApplicationScript(ApplicationScript script);

    class State;

private:
    std::shared_ptr<State> state_;
};

} // namespace orvane::test
